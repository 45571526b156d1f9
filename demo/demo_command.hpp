// `quorvel demo`: prints every sample document to files.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace quorvel::demo {

// Adds the demo subcommand; the returned function runs it once the command line is parsed.
std::function<int()> AddDemoCommand(CLI::App& app);

}  // namespace quorvel::demo
