// Helpers for the hostile-input tests: sample documents edited in JSON, the quorvel command run
// to its exit code, and checks that an output directory holds exactly what it should.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

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
  const std::string command = std::string(QUORVEL_BINARY_DIR) + "/cli/quorvel " + args + " 2>&1";
  CommandResult result;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return result;
  std::array<char, 4096> buffer;
  size_t n;
  while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) result.output.append(buffer.data(), n);
  const int status = pclose(pipe);
  result.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
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
  FILE* pipe = popen(("pdfinfo '" + path + "' 2>/dev/null").c_str(), "r");
  if (!pipe) return 0;
  std::string info;
  std::array<char, 4096> buffer;
  size_t n;
  while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) info.append(buffer.data(), n);
  if (pclose(pipe) != 0) return 0;
  const size_t at = info.find("Pages:");
  return at == std::string::npos ? 0 : std::atoi(info.c_str() + at + 6);
}

}  // namespace quorvel::testing
