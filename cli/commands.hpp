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
  bool strict = false;  // a character no installed font has is an error, not a warning
};

// Prints one document; reports what was written. Returns the process exit code.
int RunPrint(const PrintOptions& options);

}  // namespace quorvel::cli
