// Shaped text on a surface: display order worked out by hand, fitting and wrapping that keep
// letters with their marks, right alignment, and the missing-glyph warning and strict mode.
#include <gtest/gtest.h>

#include <filesystem>

#include "foundation/errors.hpp"
#include "foundation/glyph_runs.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/text_fitting.hpp"
#include "foundation/utf8.hpp"
#include "support/ops_helpers.hpp"
#include "support/shaping_helpers.hpp"

namespace quorvel::testing {
namespace {

// The runs' texts from left to right as drawn, blanks at their ends dropped.
std::vector<std::string> VisualWords(const TextOp& op) {
  std::vector<std::string> words;
  double previous_x = -1;
  for (const GlyphRun& run : GlyphRunsOf(op)) {
    EXPECT_GT(run.x.front(), previous_x) << "runs come left to right";
    previous_x = run.x.front();
    std::u32string text = LogicalText(run);
    while (!text.empty() && text.back() == U' ') text.pop_back();
    while (!text.empty() && text.front() == U' ') text.erase(0, 1);
    if (!text.empty()) words.push_back(EncodeUtf8(text));
  }
  return words;
}

TextOp Drawn(const std::string& text) {
  PreviewSurface surface;
  surface.CurrentX(1000);
  surface.Print(text);
  return Texts(surface.Ops()).at(0);
}

// Harakat and the superscript alef: the marks these texts carry.
bool IsArabicMark(char32_t cp) { return (cp >= 0x064B && cp <= 0x0652) || cp == 0x0670; }

TEST(ShapedText, DisplayOrderFollowsTheFirstStrongCharacter) {
  // Arabic first: a right-to-left line; the invoice number and the amount read left to right.
  EXPECT_EQ(VisualWords(Drawn("فاتورة INV-204 للعميل")),
            (std::vector<std::string>{"للعميل", "INV-204", "فاتورة"}));
  EXPECT_EQ(VisualWords(Drawn("المبلغ 1250 ريال")), (std::vector<std::string>{"ريال", "1250", "المبلغ"}));
  // Latin first: a left-to-right line with an Arabic word in it.
  EXPECT_EQ(VisualWords(Drawn("Total: 250 ريال")), (std::vector<std::string>{"Total: 250", "ريال"}));
  for (const std::string text : {"فاتورة INV-204 للعميل", "Total: 250 ريال"}) ExpectRunsShapedAsHbShape(Drawn(text));
}

TEST(ShapedText, OpsCarryTheParagraphDirectionOnlyForShapedText) {
  EXPECT_NE(OpToJson(Drawn("فاتورة INV-204")).find("\"text\":\"فاتورة INV-204\",\"dir\":\"rtl\"}"), std::string::npos);
  EXPECT_NE(OpToJson(Drawn("Total ريال")).find(",\"dir\":\"ltr\"}"), std::string::npos);
  EXPECT_EQ(OpToJson(Drawn("Café Zoë")).find("dir"), std::string::npos);
}

TEST(ShapedText, RightAlignedAmountEndsAtTheRightEdge) {
  PreviewSurface surface;
  for (const std::string amount : {"١٬٢٥٠٫٠٠ ر.س", "1,250.00 ر.س", "品 1,250.00"}) {
    surface.CurrentX(9000 - surface.TextWidth(amount));
    surface.PrintSameLine(amount);
    double right = 0;
    for (const GlyphRun& run : GlyphRunsOf(Texts(surface.Ops()).back()))
      for (size_t g = 0; g < run.glyphs.size(); ++g) right = std::max(right, run.x[g] + run.advances[g]);
    EXPECT_NEAR(right, 9000, 1e-6) << amount;
    EXPECT_NEAR(surface.CurrentX(), 9000, 1e-6) << amount;
  }
}

TEST(ShapedText, WrappingAnArabicDescriptionNeverSplitsACluster) {
  const std::string with_blanks =
      "قَلَمُ حِبْرٍ أَزْرَقُ نَاعِمٌ لِلْكِتَابَةِ اليَوْمِيَّةِ فِي المَكْتَبِ وَالمَدْرَسَةِ عُلْبَةٌ مِنْ عَشَرَةِ أَقْلَامٍ";
  std::string without_blanks;
  for (int i = 0; i < 12; ++i) without_blanks += "مُحَمَّدٌ";
  for (const std::string& description : {with_blanks, without_blanks}) {
    PreviewSurface surface;
    std::string text = description;
    int16_t width = 4300;
    std::vector<std::string> lines;
    WrapText(surface, text, width, lines);
    ASSERT_GT(lines.size(), 1u);
    std::u32string joined, expected;
    for (const std::string& line : lines) {
      const std::u32string chars = DecodeUtf8(line);
      ASSERT_FALSE(chars.empty());
      EXPECT_FALSE(IsArabicMark(chars.front())) << "a line starts with a mark: " << line;
      EXPECT_LT(surface.TextWidth(line), 4300) << line;
      joined += chars;
    }
    for (char32_t cp : DecodeUtf8(description)) expected += cp;
    std::erase(joined, U' ');
    std::erase(expected, U' ');
    EXPECT_EQ(EncodeUtf8(joined), EncodeUtf8(expected));
  }
}

TEST(ShapedText, ShorteningKeepsLettersWithTheirMarksAndEndsWithDots) {
  const std::u32string description = DecodeUtf8("مُحَمَّدٌ لِلتِّجَارَةِ وَالمُقَاوَلَاتِ العَامَّةِ");
  for (int16_t length : {900, 1500, 2200}) {
    PreviewSurface surface;
    std::string text = EncodeUtf8(description);
    int16_t field = length;
    AdjustedText(surface, text, field);
    const std::u32string fitted = DecodeUtf8(text);
    ASSERT_GE(fitted.size(), 3u);
    EXPECT_EQ(fitted.substr(fitted.size() - 3), U"...") << text;
    const std::u32string kept = fitted.substr(0, fitted.size() - 3);
    EXPECT_EQ(description.substr(0, kept.size()), kept) << "the logical start is kept";
    EXPECT_FALSE(IsArabicMark(description[kept.size()])) << "cut before a mark: " << text;
    EXPECT_LE(surface.TextWidth(text), length) << text;
  }
}

TEST(ShapedText, MissingCharacterIsDrawnAsTheBoxAndReported) {
  PreviewSurface surface;
  surface.Print("Corbel \U0001FAE8 Finch");
  bool box = false;
  for (const GlyphRun& run : GlyphRunsOf(Texts(surface.Ops()).at(0)))
    box = box || std::count(run.glyphs.begin(), run.glyphs.end(), 0u) == 1;
  EXPECT_TRUE(box);
  EXPECT_EQ(surface.TextWarnings(), (std::vector<std::string>{"missing glyph U+1FAE8 in \"Corbel \U0001FAE8 Finch\""}));
}

TEST(ShapedText, StrictModeAbandonsThePrinterDocumentUnwritten) {
  const std::string dir = TempDir("shaped-strict");
  PrinterSurface& printer = SystemPrinter();
  printer.SetOutput(PrinterOutput::ForPath(dir + "/out.jsonl"));
  const auto print = [] {
    PrintOnSystemPrinter([](Surface& surface) {
      surface.Print("ok");
      surface.Print("x \U0001FAE8");
      surface.EndDoc();
    });
  };
  print();
  EXPECT_EQ(printer.LastTextWarnings(), (std::vector<std::string>{"missing glyph U+1FAE8 in \"x \U0001FAE8\""}));
  std::filesystem::remove(dir + "/out.jsonl");

  SetStrictText(true);
  const int32_t number = ErrorNumberOf(print);
  SetStrictText(false);
  EXPECT_EQ(number, err::kInvalidArgument);
  EXPECT_TRUE(std::filesystem::is_empty(dir));
}

}  // namespace
}  // namespace quorvel::testing
