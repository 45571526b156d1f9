// Helpers for the hostile-input tests: sample documents edited in JSON, the quorvel command run
// to its exit code, and checks that an output directory holds exactly what it should.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "support/ops_helpers.hpp"
#include "support/print_queue_helpers.hpp"

namespace quorvel::testing {

inline nlohmann::json LoadSample(const std::string& name) {
  std::ifstream in(std::string(QUORVEL_SOURCE_DIR) + "/demo/samples/" + name + ".json");
  return nlohmann::json::parse(in);
}

inline std::string WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

struct CommandResult {
  int exit_code = -1;
  std::string output;  // standard output and error together
};

// Runs `quorvel ARGS` (arguments already quoted as the shell needs) to its end.
inline CommandResult RunQuorvel(const std::string& args) {
  const ShellResult result = Shell(std::string(QUORVEL_BINARY_DIR) + "/cli/quorvel " + args);
  return {result.status, result.output};
}

// The names in a directory: a failed print must leave neither its output nor a temporary file.
inline std::set<std::string> Entries(const std::string& dir) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) names.insert(entry.path().filename().string());
  return names;
}

// DIR/lines.json: the sample statement with `lines` short ledger lines, written as text so that
// a million lines cost no JSON document in memory.
inline std::string StatementWithLines(const std::string& dir, int lines) {
  std::string doc = LoadSample("statement").dump();
  const std::string key = "\"StatementItems\":[";
  const size_t start = doc.find(key) + key.size();
  doc.erase(start, doc.find(']', start) - start);
  std::string items;
  for (int i = 0; i < lines; ++i) items += (i ? "," : "") + std::string("{\"Description\":\"x\",\"balance\":\"1.00\"}");
  doc.insert(start, items);
  return WriteFile(dir + "/lines.json", doc);
}

// The page count pdfinfo reads from a PDF; 0 when it cannot read it as one.
inline int PdfPages(const std::string& path) {
  const ShellResult info = Shell("pdfinfo '" + path + "'");
  return info.status == 0 ? std::atoi(PdfInfoField(info.output, "Pages").c_str()) : 0;
}

}  // namespace quorvel::testing
