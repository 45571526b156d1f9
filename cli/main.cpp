// The quorvel command: print a JSON document, list the type library, describe the file format.
#include <CLI/CLI.hpp>
#include <iostream>

#include "automation/document_job.hpp"
#include "cli/commands.hpp"
#include "demo/demo_command.hpp"
#include "foundation/errors.hpp"
#include "quorvel.h"

int main(int argc, char** argv) {
  CLI::App app{"Quorvel: lays out and prints business documents"};
  app.require_subcommand(1);
  app.set_version_flag("--version", std::string("quorvel ") + quorvel_version());
  quorvel::cli::PrintOptions print;
  CLI::App* print_cmd = app.add_subcommand("print", "print a document described in JSON");
  print_cmd->add_option("document", print.document, "the document file (JSON); - reads standard input")->required();
  print_cmd->add_option("-o,--output", print.output, "output file: .pdf, .png, .svg, .jsonl or .escpos; - writes standard output");
  print_cmd->add_option("--device", print.device, "the device for -o by name instead of by ending: pdf (direct), pdf-cairo, png, svg, ops");
  print_cmd->add_option("--format", print.format, "format written to standard output (-o -)")
      ->check(CLI::IsMember({"pdf", "svg", "jsonl", "png"}));
  print_cmd->add_option("--paper", print.paper, "paper: a4, letter or roll")->check(CLI::IsMember({"a4", "letter", "roll"}));
  print_cmd->add_flag("--preview", print.preview, "draw on a preview surface (no pages) instead of the printer");
  print_cmd->add_flag("--strict", print.strict, "refuse a document with characters no installed font has");
  auto* queue = print_cmd->add_option("--printer", print.queue, "print to a print queue (the default one when no name is given)");
  queue->expected(0, 1);
  print_cmd->add_option("--escpos", print.escpos, "print to an ESC/POS receipt printer: tcp://HOST[:PORT], a device such as /dev/usb/lp0, or cups://QUEUE");
  print_cmd->add_option("--escpos-paper", print.escpos_paper, "ESC/POS roll width in mm: 80 or 58")->check(CLI::IsMember({80, 58}));
  print_cmd->add_option("--escpos-dpi", print.escpos_dpi, "ESC/POS printer resolution: 203 or 180")->check(CLI::IsMember({203, 180}));
  print_cmd->add_option("--escpos-timeout", print.escpos_timeout, "seconds to reach and write to the ESC/POS printer")->check(CLI::Range(1, 3600));
  print_cmd->add_flag("--drawer", print.drawer, "open the cash drawer after the receipt (ESC/POS)");
  print_cmd->add_flag("--no-cut", print.no_cut, "feed the receipt out without cutting it (ESC/POS)");
  print_cmd->add_flag("--pdfa", print.pdfa, "write PDF/A-3b (a .pdf output only)");
  print_cmd->add_option("--attach", print.attach,
                        "carry FILE inside the PDF (repeatable); factur-x.xml is attached as the invoice's Factur-X XML")
      ->type_name("FILE")
      ->allow_extra_args(false);
  CLI::App* typelib_cmd = app.add_subcommand("typelib", "list the Quorvel type library");
  const quorvel::cli::BatchCommand batch = quorvel::cli::AddBatchCommand(app);
  CLI::App* schema_cmd = app.add_subcommand("schema", "print the JSON Schema of document files");
  auto run_demo = quorvel::demo::AddDemoCommand(app);
  CLI11_PARSE(app, argc, argv);
  try {
    if (print_cmd->parsed()) {
      print.to_queue = queue->count() > 0;
      return quorvel::cli::RunPrint(print);
    }
    if (batch.command->parsed()) return batch.run();
    if (schema_cmd->parsed()) return quorvel::cli::RunSchema();
    if (typelib_cmd->parsed()) {
      std::cout << quorvel::DescribeLibrary();
      return 0;
    }
    return run_demo();
  } catch (const quorvel::AutomationError& e) {
    std::cerr << "quorvel: " << e.what() << "\n";
    return 2;
  } catch (const std::exception& e) {
    std::cerr << "quorvel: " << e.what() << "\n";
    return 2;
  }
}
