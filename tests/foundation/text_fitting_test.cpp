// Text fitting on real Liberation Sans widths. Digits are all 1139 font units wide and a blank
// 569, so at 10 pt a digit is 111.23 twips and a blank 55.57: the cuts below are worked out
// from those numbers.
#include <gtest/gtest.h>

#include "foundation/preview_surface.hpp"
#include "foundation/text_fitting.hpp"

namespace quorvel {
namespace {

constexpr double kDigit = 1139 * 200.0 / 2048;
constexpr double kBlank = 569 * 200.0 / 2048;

TEST(AdjustedText, KeepsAFittingTextAndCutsByThreeCharacters) {
  PreviewSurface s;
  std::string text = "short";
  int16_t length = 5000;
  EXPECT_EQ(AdjustedText(s, text, length), "short");
  EXPECT_EQ(text, "short");

  // 10 characters: first 7 + "...", then 4 + "...", then 1 + "...", stopping once it fits.
  std::string ten = "ABCDEFGHIJ";
  int16_t to_four = static_cast<int16_t>(s.TextWidth("ABCD..."));  // floor: "ABCD..." is wider
  EXPECT_EQ(AdjustedText(s, ten, to_four), "A...");
  EXPECT_EQ(ten, "A...");  // written back
  std::string again = "ABCDEFGHIJ";
  int16_t roomy = static_cast<int16_t>(s.TextWidth("ABCD...") + 1);
  EXPECT_EQ(AdjustedText(s, again, roomy), "ABCD...");
  EXPECT_EQ(roomy, static_cast<int16_t>(s.TextWidth("ABCD...") + 1));  // length untouched

  // Exactly as wide as the length: returned unchanged. At 102.4 pt one font unit is one twip,
  // so "11" is exactly 2278 twips wide.
  s.Font().Size(102.4);
  std::string exact = "11";
  int16_t same = 2278;
  EXPECT_EQ(AdjustedText(s, exact, same), "11");
  int16_t less = 2277;
  EXPECT_EQ(AdjustedText(s, exact, less), "1...");
}

TEST(AdjustedText, ShortTextsStartAtOneAndNarrowLengthsNeverHang) {
  PreviewSurface s;
  std::string two = "WW";
  int16_t length = 300;  // "WW" is 377.5: n = 2 − 3 < 0 gives n = 1: "W..." (355.5) still wider
  EXPECT_EQ(AdjustedText(s, two, length), "W...");
  std::string any = "Invoice total";
  int16_t none = 10;  // even "...." is wider: the routine stops instead of going round for ever
  EXPECT_EQ(AdjustedText(s, any, none), "I...");
  // Three characters: n = 0 gives "..." alone, then n = 1 gives "." + "...", where it stays.
  int16_t negative = -500;
  std::string neg = "abc";
  EXPECT_EQ(AdjustedText(s, neg, negative), "....");
}

TEST(AdjustedText2, BreaksWithoutLosingCharacters) {
  PreviewSurface s;
  std::string fits = "ABC";
  int16_t wide = 5000;
  EXPECT_EQ(AdjustedText2(s, fits, wide), "ABC");

  std::string ten = "ABCDEFGHIJ";
  int16_t seven = static_cast<int16_t>(s.TextWidth("ABCDEFG") + 1);
  EXPECT_EQ(AdjustedText2(s, ten, seven), "ABCDEFG\r\nHIJ");
  EXPECT_EQ(ten, "ABCDEFG\r\nHIJ");

  // The second round breaks three characters further left in the text as it now stands.
  std::string again = "ABCDEFGHIJ";
  int16_t four = static_cast<int16_t>(s.TextWidth("ABCD") + 1);
  EXPECT_EQ(AdjustedText2(s, again, four), "ABCD\r\nEFG\r\nHIJ");

  std::string tight = "ABCDEFGHIJ";
  int16_t tiny = 5;  // no line can get narrower than one letter: stops, characters all kept
  std::string result = AdjustedText2(s, tight, tiny);
  std::string letters;
  for (char c : result)
    if (c != '\r' && c != '\n') letters += c;
  EXPECT_EQ(letters, "ABCDEFGHIJ");
}

TEST(WrapText, BreaksBeforeTheLastMeasuredBlankOrAfterTheMeasuredCharacters) {
  // Width 789 − W (188.77) = 600.23, rounded to 600 and written back.
  struct Case { std::string text; std::vector<std::string> lines; };
  const Case cases[] = {
      // "1111 2" reaches 611.7 ≥ 600 with the blank at 5: cut 4. " 2222 3" reaches 667.3 with
      // the blank at 6: cut 5, then " 3333" (500.49, below 600) stays whole.
      {"1111 2222 3333", {"1111", "2222", "3333"}},
      // Six digits (667.4) are the first to reach 600: no blank, so the cut is after them.
      {"1111111111", {"111111", "1111"}},
      // "11 222" reaches 611.7, blank at 3: cut 2. The rest " 222222222" starts with the cut
      // blank (remembered at 1, so no usable blank): " 22222" reaches 611.7 after 6, cut 6.
      {"11 222222222", {"11", "22222", "2222"}}};
  PreviewSurface s;
  std::vector<std::string> lines;
  for (const Case& c : cases) {
    std::string text = c.text;
    int16_t width = 789;
    lines = {"stale"};
    WrapText(s, text, width, lines);
    EXPECT_EQ(width, 600) << c.text;
    EXPECT_EQ(lines, c.lines) << c.text;
    // The text is left as the last line, before its leading blank went.
    if (c.text == "1111 2222 3333") EXPECT_EQ(text, " 3333");
  }
  EXPECT_DOUBLE_EQ(s.TextWidth(" 3333"), kBlank + 4 * kDigit);

  std::string narrow = "abc def";
  int16_t zero = 100;  // 100 − 188.77 is negative: nothing can be measured onto a line
  WrapText(s, narrow, zero, lines);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "abc def");  // ends at once and keeps every character
}

TEST(WrapText, FittingTextKeepsBlanksAndWidthShrinksEachCall) {
  PreviewSurface s;
  std::string text = "  12";
  int16_t width = 4300;
  std::vector<std::string> lines;
  WrapText(s, text, width, lines);
  EXPECT_EQ(lines, (std::vector<std::string>{"  12"}));
  EXPECT_EQ(width, 4111);  // 4300 − 188.77 = 4111.23
  WrapText(s, text, width, lines);
  EXPECT_EQ(width, 3922);  // narrower by one "W" again
  EXPECT_EQ(lines.size(), 1u);
}

TEST(WrapText, LongTextsWrapWholly) {
  PreviewSurface s;
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "word ";
  int16_t width = 4300;
  std::vector<std::string> lines;
  WrapText(s, text, width, lines);
  std::string joined;
  for (const auto& line : lines) joined += line;
  size_t words = 0;
  for (size_t at = joined.find("word"); at != std::string::npos; at = joined.find("word", at + 1)) ++words;
  EXPECT_EQ(words, 20000u);
  for (const auto& line : lines) EXPECT_LE(s.TextWidth(line), 4300);
}

TEST(SplitInTwo, FirstLineEndsAtTheFirstBlankPastTheWidth) {
  PreviewSurface s;
  std::vector<std::string> lines;
  SplitInTwo(s, "one two", 5000, lines);
  EXPECT_EQ(lines, (std::vector<std::string>{"one two"}));

  lines.clear();
  SplitInTwo(s, "one two three four", s.TextWidth("one two"), lines);
  EXPECT_EQ(lines, (std::vector<std::string>{"one two ", "three four"}));

  // No blank ends a wide-enough head: a single long word, or blanks only early on.
  lines.clear();
  SplitInTwo(s, "Onehundredthousandandfive", 100, lines);
  EXPECT_EQ(lines, (std::vector<std::string>{"Onehundredthousandandfive"}));
  lines.clear();
  SplitInTwo(s, "a bcdefghijklmnopqrstuvwxyz", s.TextWidth("a bc"), lines);
  EXPECT_EQ(lines, (std::vector<std::string>{"a bcdefghijklmnopqrstuvwxyz"}));
}

}  // namespace
}  // namespace quorvel
