// hb-shape and pdftotext driven from tests, and the per-run comparison with hb-shape.
#include "support/shaping_helpers.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "foundation/utf8.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {

std::vector<ReferenceGlyph> HbShape(const std::string& font_file, const std::u32string& text) {
  const std::string dir = TempDir("hb-shape");
  std::ofstream(dir + "/text.txt", std::ios::binary) << EncodeUtf8(text);
  const std::string output = RunCommand("hb-shape --output-format=json --no-glyph-names '" + font_file +
                                        "' --text-file='" + dir + "/text.txt'");
  std::vector<ReferenceGlyph> glyphs;
  for (const auto& item : nlohmann::json::parse(output))
    glyphs.push_back({item.at("g").get<uint32_t>(), item.at("ax").get<int32_t>()});
  return glyphs;
}

std::u32string LogicalText(const GlyphRun& run) {
  std::u32string text;
  for (size_t g = 0; g < run.chars.size(); ++g) {
    const std::u32string& chars = run.chars[run.rtl ? run.chars.size() - 1 - g : g];
    text += chars;
  }
  return text;
}

void ExpectRunsShapedAsHbShape(const TextOp& op) {
  size_t characters = 0;
  for (const GlyphRun& run : GlyphRunsOf(op)) {
    const std::u32string text = LogicalText(run);
    characters += text.size();
    const std::vector<ReferenceGlyph> expected = HbShape(run.face->File(), text);
    ASSERT_EQ(run.glyphs.size(), expected.size()) << op.text << " / " << EncodeUtf8(text);
    const double twips_per_unit = TwipsPerUnit(*run.face, op.size);
    for (size_t g = 0; g < expected.size(); ++g) {
      EXPECT_EQ(run.glyphs[g], expected[g].glyph) << EncodeUtf8(text) << " glyph " << g;
      EXPECT_NEAR(run.advances[g], expected[g].advance * twips_per_unit, 1e-6) << EncodeUtf8(text);
      EXPECT_NE(run.glyphs[g], 0u) << "missing-glyph box in " << EncodeUtf8(text);
    }
  }
  EXPECT_EQ(characters, DecodeUtf8(op.text).size()) << "every character is drawn once: " << op.text;
}

std::string PdfText(const std::string& pdf) {
  std::string text = RunCommand("pdftotext '" + pdf + "' -");
  for (const char* mark : {"\u202A", "\u202B", "\u202C", "\u202D", "\u202E", "\u200E", "\u200F"}) {
    for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark))
      text.erase(at, std::string(mark).size());
  }
  return text;
}

}  // namespace quorvel::testing
