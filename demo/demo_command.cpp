// `quorvel demo`: each sample to a PDF and a PNG preview (--out DIR), or the form as a web page (--serve).
#include "demo/demo_command.hpp"

#include <filesystem>
#include <iomanip>
#include <iostream>

#include "automation/document_job.hpp"
#include "demo/demo_server.hpp"
#include "demo/samples.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"

namespace quorvel::demo {

namespace {

struct Written {
  std::string file;
  int pages;
};

std::vector<Written> PrintSample(const Sample& sample, const std::string& out) {
  const std::string source = SamplesDir() + "/" + sample.name + ".json";
  const DocumentJob job = LoadDocumentJobFile(source);
  const Paper paper = job.type == "receipt" ? Paper::Roll80() : Paper::A4();
  PrinterSurface& printer = SystemPrinter();
  printer.SetPaper(paper);
  printer.SetOutput(PrinterOutput::ForPath(out + "/" + sample.name + ".pdf"));
  PrintJobOnSystemPrinter(job);
  if (printer.InDocument()) printer.EndDoc();
  std::vector<Written> written{{printer.LastResults().front(), printer.LastPageCount()}};
  // The preview draws every page on one picture, as an on-screen preview does.
  PreviewSurface preview(paper.width, paper.roll ? 8000 : paper.height);
  PrintJobOnSurface(LoadDocumentJobFile(source), preview);
  const std::string png = out + "/" + sample.name + "-preview.png";
  preview.WritePng(png);
  written.push_back({png, 1});
  return written;
}

int RunDemo(const std::string& out) {
  std::filesystem::create_directories(out);
  std::vector<Written> all;
  std::vector<std::string> missing;
  for (const Sample& sample : Samples()) {
    if (!std::filesystem::exists(SamplesDir() + "/" + sample.name + ".json")) {
      missing.push_back(sample.name + ".json");
      continue;
    }
    for (const Written& w : PrintSample(sample, out)) all.push_back(w);
  }
  std::cout << std::left << std::setw(48) << "file" << "pages\n";
  for (const Written& w : all) std::cout << std::left << std::setw(48) << w.file << w.pages << "\n";
  for (const std::string& name : missing) std::cout << "no sample yet: " << name << "\n";
  return 0;
}

}  // namespace

std::function<int()> AddDemoCommand(CLI::App& app) {
  auto out = std::make_shared<std::string>("demo-output");
  auto serve = std::make_shared<bool>(false);
  auto port = std::make_shared<int>(8377);
  CLI::App* cmd = app.add_subcommand("demo", "print every sample document to files, or serve the demonstration form");
  auto* out_option = cmd->add_option("--out", *out, "folder for the files (default demo-output)");
  auto* serve_flag = cmd->add_flag("--serve", *serve, "serve the demonstration form on http://127.0.0.1:PORT/");
  cmd->add_option("--port", *port, "port of --serve (default 8377; 0 takes any free port)")
      ->check(CLI::Range(0, 65535))
      ->needs(serve_flag);
  serve_flag->excludes(out_option);
  return [cmd, out, serve, port] {
    if (!cmd->parsed()) return 0;
    return *serve ? ServeDemo(*port) : RunDemo(*out);
  };
}

}  // namespace quorvel::demo
