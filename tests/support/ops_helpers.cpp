// Test helpers for recorded ops, commands and scratch folders.
#include "support/ops_helpers.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <unistd.h>

#include <filesystem>

namespace quorvel::testing {

template <class T>
static std::vector<T> OfKind(const DrawOps& ops) {
  std::vector<T> out;
  for (const DrawOp& op : ops)
    if (auto* p = std::get_if<T>(&op)) out.push_back(*p);
  return out;
}

std::vector<TextOp> Texts(const DrawOps& ops) { return OfKind<TextOp>(ops); }
std::vector<LineOp> Lines(const DrawOps& ops) { return OfKind<LineOp>(ops); }
std::vector<BoxOp> Boxes(const DrawOps& ops) { return OfKind<BoxOp>(ops); }

TextOp FindText(const DrawOps& ops, const std::string& text) {
  for (const TextOp& t : Texts(ops))
    if (t.text == text) return t;
  ADD_FAILURE() << "no text op \"" << text << "\"";
  return {};
}

bool HasText(const DrawOps& ops, const std::string& text) {
  for (const TextOp& t : Texts(ops))
    if (t.text == text) return true;
  return false;
}

int CountOps(const DrawOps& ops, const std::string& kind) {
  int n = 0;
  for (const DrawOp& op : ops) {
    const std::string json = OpToJson(op);
    if (json.find("\"op\":\"" + kind + "\"") != std::string::npos) ++n;
  }
  return n;
}

std::string RunCommand(const std::string& command) {
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) {
    ADD_FAILURE() << "cannot run " << command;
    return output;
  }
  std::array<char, 4096> buffer;
  size_t n;
  while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) output.append(buffer.data(), n);
  const int status = pclose(pipe);
  EXPECT_EQ(status, 0) << command << "\n" << output;
  return output;
}

std::string TempDir(const std::string& name) {
  const auto dir = std::filesystem::temp_directory_path() / ("quorvel-test-" + name + "-" + std::to_string(getpid()));
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir.string();
}

}  // namespace quorvel::testing
