// Font faces found through fontconfig and measured from their FreeType advance tables.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

typedef struct FT_FaceRec_* FT_Face;
typedef struct hb_font_t hb_font_t;

namespace quorvel {

// One loaded face. Advances are read once into a table, so measuring a text is a lookup per
// character; the object is immutable after loading and may be shared between threads.
class FontFace {
 public:
  // The face for a font name as a surface knows it ("Arial" is served by Liberation Sans).
  // Raises an error naming the font when fontconfig has no such family.
  static const FontFace& Get(std::string_view name, bool bold);
  // The face in a font file (a fallback found by coverage), loaded once per file.
  static const FontFace& FromFile(const std::string& file);

  // Sum of unhinted advance widths in font units, without kerning.
  int64_t AdvanceUnits(std::u32string_view text) const;
  int64_t AdvanceUnits(std::string_view utf8) const;
  int32_t Advance(char32_t cp) const;
  // The face's glyph id for a code point (0, the missing-glyph box, where the face lacks it).
  uint32_t GlyphIndex(char32_t cp) const;

  int32_t UnitsPerEm() const { return units_per_em_; }
  int32_t Ascender() const { return ascender_; }
  // hhea ascender − descender + lineGap: the line pitch in font units.
  int32_t LineUnits() const { return line_units_; }
  const std::string& File() const { return file_; }
  // True when the face has a glyph of its own for `cp`.
  bool Covers(char32_t cp) const { return cp < 0x10000 ? bmp_glyphs_[cp] != 0 : GlyphIndex(cp) != 0; }
  // The sum of advances, in font units, when every character is one the face draws on its own,
  // left to right, glyph for glyph; false (and `units` unspecified) when any character needs
  // shaping, another direction or another font.
  bool PlainAdvanceUnits(std::string_view utf8, int64_t& units) const;
  bool PlainAdvanceUnits(std::u32string_view text, int64_t& units) const;
  // HarfBuzz's font for this face, scaled to font units; immutable, shared between threads.
  hb_font_t* Shaper() const { return shaper_; }

  FontFace(const FontFace&) = delete;
  FontFace& operator=(const FontFace&) = delete;

 private:
  explicit FontFace(std::string file);
  bool IsPlain(char32_t cp) const { return cp < 0x10000 ? plain_[cp] != 0 : false; }

  std::string file_;
  FT_Face face_ = nullptr;
  int32_t units_per_em_ = 2048;
  int32_t ascender_ = 0;
  int32_t line_units_ = 0;
  int32_t missing_advance_ = 0;
  std::vector<int32_t> bmp_advances_;  // one entry per code point below U+10000
  std::vector<uint16_t> bmp_glyphs_;   // glyph id per code point below U+10000, 0 where missing
  std::vector<uint8_t> plain_;         // 1 where a code point is drawn as its own glyph, left to right
  hb_font_t* shaper_ = nullptr;
  mutable std::mutex astral_mutex_;     // guards the face for code points past the table
};

// Twips per font unit at `size_pt`: a font unit is size × 20 / unitsPerEm twips.
inline double TwipsPerUnit(const FontFace& face, double size_pt) {
  return size_pt * 20.0 / face.UnitsPerEm();
}

}  // namespace quorvel
