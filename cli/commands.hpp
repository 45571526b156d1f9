// The subcommands of the quorvel command.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace quorvel::cli {

struct PrintOptions {
  std::string document;
  std::string output;
  std::string paper = "a4";
  bool preview = false;
  bool to_queue = false;
  std::string queue;
  // A receipt printer speaking ESC/POS: --escpos DESTINATION, or -o NAME.escpos.
  std::string escpos;
  int escpos_paper = 80;
  int escpos_dpi = 203;
  int escpos_timeout = 10;
  bool drawer = false;
  bool no_cut = false;
};

// Prints one document; reports what was written. Returns the process exit code.
int RunPrint(const PrintOptions& options);

}  // namespace quorvel::cli
