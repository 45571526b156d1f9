// Text fitting against the written rules on texts with line breaks, and on hostile lengths.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "foundation/preview_surface.hpp"
#include "foundation/runtime.hpp"
#include "foundation/text_fitting.hpp"

namespace quorvel {
namespace {

std::string LTrim(const std::string& t) {
  const size_t first = t.find_first_not_of(' ');
  return first == std::string::npos ? std::string() : t.substr(first);
}

// The word-wrap rule restated step by step, measuring every candidate with TextWidth.
std::vector<std::string> ReferenceWrap(Surface& obj, std::string text, int16_t width) {
  width = ToInt16(width - obj.TextWidth("W"));
  if (obj.TextWidth(text) < width) return {text};
  std::vector<std::string> lines;
  int last_blank = 0;
  while (obj.TextWidth(text) > width) {
    std::string line;
    int i = 1;
    while (obj.TextWidth(line) < width) {
      const std::string ch = i <= static_cast<int>(text.size()) ? text.substr(i - 1, 1) : "";
      line += ch;
      if (ch == " ") last_blank = i;
      ++i;
    }
    const int cut = i > last_blank ? (last_blank > 1 ? last_blank - 1 : i - 1) : i;
    lines.push_back(LTrim(text.substr(0, static_cast<size_t>(cut))));
    text = text.substr(std::min(static_cast<size_t>(cut), text.size()));
  }
  lines.push_back(LTrim(text));
  return lines;
}

// Texts made of narrow and wide letters, blanks, lone CRs and LFs and CR LF pairs, so that
// candidate lines start and end on every part of a line break.
std::string RandomText(std::mt19937& random, bool line_breaks = true) {
  static const std::vector<std::string> pieces = {"a", "i", "W", "m", " ", " ", "\r", "\n", "\r\n", "\r\n", "\r\r\n"};
  static const std::vector<std::string> plain = {"a", "i", "W", "m", " ", "  ", "ij", "."};
  const std::vector<std::string>& choice = line_breaks ? pieces : plain;
  std::string text;
  const int count = std::uniform_int_distribution<int>(0, 120)(random);
  for (int k = 0; k < count; ++k) text += choice[std::uniform_int_distribution<size_t>(0, choice.size() - 1)(random)];
  return text;
}

// Random texts against the rule measured afresh for every candidate line: with line breaks
// (each line grown a character at a time) and without (each line's length found by halving).
TEST(WrapTextRobustness, RandomTextsWrapAsTheRuleMeasuresThem) {
  PreviewSurface obj;
  const int16_t widths[] = {250, 700, 1000, 1800, 4300};
  for (const bool line_breaks : {true, false}) {
    std::mt19937 random(line_breaks ? 20240817 : 20261123);
    for (int round = 0; round < 400; ++round) {
      const std::string text = RandomText(random, line_breaks);
      const int16_t width = widths[round % 5];
      std::string wrapped = text;
      int16_t given = width;
      std::vector<std::string> lines;
      WrapText(obj, wrapped, given, lines);
      ASSERT_EQ(lines, ReferenceWrap(obj, text, width)) << "round " << round << ", width " << width;
    }
  }
}

TEST(WrapTextRobustness, AMegabyteWithLineBreaksWrapsWholly) {
  PreviewSurface obj;
  std::string text;
  while (text.size() < 1'000'000) text += "lorem ipsum dolor sit amet consectetur adipiscing elit\r\n";
  std::string wrapped = text;
  int16_t width = 4300;
  std::vector<std::string> lines;
  WrapText(obj, wrapped, width, lines);
  // Every line stays within the column given, and no letter is lost.
  const size_t sentences = text.size() / 56;
  size_t letters = 0;
  for (const std::string& line : lines) {
    ASSERT_LE(obj.TextWidth(line), 4300) << line;
    for (char c : line) letters += (c != ' ' && c != '\r' && c != '\n');
  }
  EXPECT_EQ(letters, sentences * (56 - 7 - 2));  // 7 blanks and the CR LF of each sentence
}

}  // namespace
}  // namespace quorvel
