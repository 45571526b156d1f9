// Test helpers for recorded ops, measures, errors, commands and scratch folders.
#include "support/ops_helpers.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include "foundation/errors.hpp"
#include "foundation/text_fitting.hpp"

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

bool HasText(const DrawOps& ops, const std::string& text) { return !AllTexts(ops, text).empty(); }

std::vector<TextOp> AllTexts(const DrawOps& ops, const std::string& text) {
  std::vector<TextOp> found;
  for (const TextOp& t : Texts(ops))
    if (t.text == text) found.push_back(t);
  return found;
}

int CountOps(const DrawOps& ops, const std::string& kind) {
  int n = 0;
  for (const DrawOp& op : ops) {
    const std::string json = OpToJson(op);
    if (json.find("\"op\":\"" + kind + "\"") != std::string::npos) ++n;
  }
  return n;
}

template <class Op>
static bool HasCorners(const std::vector<Op>& ops, double x1, double y1, double x2, double y2) {
  auto near = [](double a, double b) { return std::abs(a - b) < 1e-6; };
  for (const Op& o : ops)
    if (near(o.x1, x1) && near(o.y1, y1) && near(o.x2, x2) && near(o.y2, y2)) return true;
  return false;
}

bool HasLine(const DrawOps& ops, double x1, double y1, double x2, double y2) {
  return HasCorners(Lines(ops), x1, y1, x2, y2);
}

bool HasBox(const DrawOps& ops, double x1, double y1, double x2, double y2) {
  return HasCorners(Boxes(ops), x1, y1, x2, y2);
}

void ExpectAt(const TextOp& text, double x, double y) {
  EXPECT_NEAR(text.x, x, 1e-6) << text.text;
  EXPECT_NEAR(text.y, y, 1e-6) << text.text;
}

double Measure(const std::string& text, double points, bool bold) {
  PreviewSurface measure;
  measure.Font().Size(points);
  measure.Font().Bold(bold);
  return measure.TextWidth(text);
}

double WidthOf(const TextOp& text) {
  PreviewSurface measure;
  measure.Font().Name(text.font);
  measure.Font().Size(text.size);
  measure.Font().Bold(text.bold);
  return measure.TextWidth(text.text);
}

std::string Fitted(std::string text, int16_t length, double points) {
  PreviewSurface measure;
  measure.Font().Size(points);
  AdjustedText(measure, text, length);
  return text;
}

std::vector<std::string> Wrapped(std::string text, int16_t width) {
  PreviewSurface measure;
  std::vector<std::string> lines;
  WrapText(measure, text, width, lines);
  return lines;
}

std::string JustWider(double length) {
  std::string text;
  while (Measure(text + "1") <= length) text += "1";
  while (Measure(text) <= length) text += ".";
  return text;
}

int32_t ErrorNumberOf(const std::function<void()>& call, std::string* context) {
  try {
    call();
  } catch (const AutomationError& e) {
    if (context) *context = e.Context();
    return e.Number();
  }
  return 0;
}

void NoEndDocSurface::EndDoc() {
  ++end_doc_calls;
  Raise(err::kNotSupported, "no EndDoc");
}

namespace {
struct Rect {
  double x1, y1, x2, y2;
};

// A straight rule (horizontal or vertical) runs through the inside of `r`.
bool Through(double x1, double y1, double x2, double y2, const Rect& r) {
  // A rule along a text's edge, or within a twip of it (the caption row starts at the whole-number
  // y under a table top that may not be whole), does not cross it.
  constexpr double kTouch = 1;
  if (std::abs(y1 - y2) < kTouch)
    return y1 > r.y1 + kTouch && y1 < r.y2 - kTouch && std::max(x1, x2) > r.x1 + kTouch && std::min(x1, x2) < r.x2 - kTouch;
  return x1 > r.x1 + kTouch && x1 < r.x2 - kTouch && std::max(y1, y2) > r.y1 + kTouch && std::min(y1, y2) < r.y2 - kTouch;
}
}  // namespace

std::vector<std::string> RulesCrossingTexts(const DrawOps& ops) {
  std::vector<std::pair<Rect, std::string>> texts;
  for (const TextOp& t : Texts(ops))
    texts.push_back({{t.x, t.y, t.x + WidthOf(t), t.y + LineAt(t.size)}, t.text});
  std::vector<std::string> found;
  auto check = [&](double x1, double y1, double x2, double y2) {
    for (const auto& [rect, text] : texts)
      if (Through(x1, y1, x2, y2, rect)) {
        std::ostringstream out;
        out << "rule (" << x1 << "," << y1 << ")-(" << x2 << "," << y2 << ") crosses \"" << text << "\"";
        found.push_back(out.str());
      }
  };
  for (const LineOp& l : Lines(ops)) check(l.x1, l.y1, l.x2, l.y2);
  for (const BoxOp& b : Boxes(ops)) {
    check(b.x1, b.y1, b.x2, b.y1);
    check(b.x1, b.y2, b.x2, b.y2);
    check(b.x1, b.y1, b.x1, b.y2);
    check(b.x2, b.y1, b.x2, b.y2);
  }
  return found;
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

std::string PdfInfoField(const std::string& info, const std::string& name) {
  const std::string key = "\n" + name + ":";
  const size_t at = ("\n" + info).find(key);
  if (at == std::string::npos) return {};
  const size_t start = info.find_first_not_of(' ', at + key.size() - 1);
  const size_t end = info.find('\n', start);
  return info.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

DrawOps ReadOpsFile(const std::string& path) {
  DrawOps ops;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);)
    if (!line.empty()) ops.push_back(OpFromJson(line));
  return ops;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path);
  std::stringstream content;
  content << in.rdbuf();
  return content.str();
}

std::string TempDir(const std::string& name) {
  const auto dir = std::filesystem::temp_directory_path() / ("quorvel-test-" + name + "-" + std::to_string(getpid()));
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir.string();
}

}  // namespace quorvel::testing
