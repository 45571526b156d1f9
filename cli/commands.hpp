// The subcommands of the quorvel command.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace quorvel::cli {

struct PrintOptions {
  std::string document;
  std::string output;          // "-": standard output, in `format`
  std::string format = "pdf";  // pdf, svg or jsonl (for standard output)
  std::string device;          // a registered device's name for -o, instead of the ending's
  std::string paper = "a4";
  bool preview = false;
  bool to_queue = false;
  std::string queue;
  bool strict = false;  // a character no installed font has is an error, not a warning
  // A receipt printer speaking ESC/POS: --escpos DESTINATION, or -o NAME.escpos.
  std::string escpos;
  int escpos_paper = 80;
  int escpos_dpi = 203;
  int escpos_timeout = 10;
  bool drawer = false;
  bool no_cut = false;
  // PDF/A-3b, and files carried inside the PDF (factur-x.xml becomes the invoice's Alternative).
  bool pdfa = false;
  std::vector<std::string> attach;
};

// Prints one document; reports what was written. Returns the process exit code.
int RunPrint(const PrintOptions& options);

// `quorvel batch`: the subcommand, and what runs it once parsed (returns the exit code).
struct BatchCommand {
  CLI::App* command;
  std::function<int()> run;
};
BatchCommand AddBatchCommand(CLI::App& app);

// Prints the JSON Schema of the document file format.
int RunSchema();

}  // namespace quorvel::cli
