// The quorvel command: print a JSON document, list the type library.
#include <CLI/CLI.hpp>
#include <iostream>

#include "automation/document_job.hpp"
#include "cli/commands.hpp"
#include "demo/demo_command.hpp"
#include "foundation/errors.hpp"

int main(int argc, char** argv) {
  CLI::App app{"Quorvel: lays out and prints business documents"};
  app.require_subcommand(1);
  quorvel::cli::PrintOptions print;
  CLI::App* print_cmd = app.add_subcommand("print", "print a document described in JSON");
  print_cmd->add_option("document", print.document, "the document file (JSON)")->required();
  print_cmd->add_option("-o,--output", print.output, "output file: .pdf, .png, .svg or .jsonl");
  print_cmd->add_option("--paper", print.paper, "paper: a4, letter or roll")->check(CLI::IsMember({"a4", "letter", "roll"}));
  print_cmd->add_flag("--preview", print.preview, "draw on a preview surface (no pages) instead of the printer");
  print_cmd->add_flag("--strict", print.strict, "refuse a document with characters no installed font has");
  auto* queue = print_cmd->add_option("--printer", print.queue, "print to a print queue (the default one when no name is given)");
  queue->expected(0, 1);
  CLI::App* typelib_cmd = app.add_subcommand("typelib", "list the Quorvel type library");
  auto run_demo = quorvel::demo::AddDemoCommand(app);
  CLI11_PARSE(app, argc, argv);
  try {
    if (print_cmd->parsed()) {
      print.to_queue = queue->count() > 0;
      return quorvel::cli::RunPrint(print);
    }
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
