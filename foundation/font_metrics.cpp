// Loading of faces through fontconfig + FreeType, with a process-wide cache of loaded faces.
#include "foundation/font_metrics.hpp"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H
#include FT_ADVANCES_H

#include <map>
#include <memory>
#include <mutex>

#include "foundation/errors.hpp"
#include "foundation/utf8.hpp"

namespace quorvel {

namespace {

std::mutex& CacheMutex() {
  static std::mutex mutex;
  return mutex;
}

FT_Library Library() {
  static FT_Library library = [] {
    FT_Library lib = nullptr;
    if (FT_Init_FreeType(&lib) != 0) Raise(err::kInvalidArgument, "FreeType could not start");
    return lib;
  }();
  return library;
}

std::string FamilyFor(std::string_view name) {
  // Liberation Sans has the same metrics as Arial, glyph for glyph.
  std::string lower;
  for (char c : name) lower += static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  if (lower == "arial") return "Liberation Sans";
  return std::string(name);
}

std::string CaseFolded(std::string_view s) {
  std::string out;
  for (char c : s) out += static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  return out;
}

// Asks fontconfig for the family; only an exact family match counts as found.
std::string FindFontFile(const std::string& family, bool bold) {
  FcPattern* pattern = FcPatternCreate();
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern, FC_SLANT, FC_SLANT_ROMAN);
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  FcPattern* match = FcFontMatch(nullptr, pattern, &result);
  FcPatternDestroy(pattern);
  std::string file;
  if (match) {
    FcChar8* found_family = nullptr;
    FcChar8* found_file = nullptr;
    int weight = 0;
    if (FcPatternGetString(match, FC_FAMILY, 0, &found_family) == FcResultMatch &&
        FcPatternGetString(match, FC_FILE, 0, &found_file) == FcResultMatch &&
        CaseFolded(reinterpret_cast<const char*>(found_family)) == CaseFolded(family)) {
      FcPatternGetInteger(match, FC_WEIGHT, 0, &weight);
      if (!bold || weight >= FC_WEIGHT_BOLD) file = reinterpret_cast<const char*>(found_file);
    }
    FcPatternDestroy(match);
  }
  return file;
}

}  // namespace

FontFace::FontFace(std::string file, std::string family, bool bold) : file_(std::move(file)) {
  if (FT_New_Face(Library(), file_.c_str(), 0, &face_) != 0)
    Raise(err::kInvalidArgument, "font file " + file_ + " of " + family + " cannot be read");
  units_per_em_ = face_->units_per_EM;
  auto* hhea = static_cast<TT_HoriHeader*>(FT_Get_Sfnt_Table(face_, FT_SFNT_HHEA));
  if (hhea) {
    ascender_ = hhea->Ascender;
    line_units_ = hhea->Ascender - hhea->Descender + hhea->Line_Gap;
  } else {
    ascender_ = face_->ascender;
    line_units_ = face_->height;
  }
  FT_Fixed advance = 0;
  FT_Get_Advance(face_, 0, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING, &advance);
  missing_advance_ = static_cast<int32_t>(advance);
  bmp_advances_.assign(0x10000, missing_advance_);
  bmp_glyphs_.assign(0x10000, 0);
  FT_UInt glyph = 0;
  FT_ULong cp = FT_Get_First_Char(face_, &glyph);
  while (glyph != 0) {
    if (cp < 0x10000 && FT_Get_Advance(face_, glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING,
                                       &advance) == 0) {
      bmp_advances_[cp] = static_cast<int32_t>(advance);
      bmp_glyphs_[cp] = static_cast<uint16_t>(glyph);
    }
    cp = FT_Get_Next_Char(face_, cp, &glyph);
  }
  (void)bold;
}

const FontFace& FontFace::Get(std::string_view name, bool bold) {
  static std::map<std::pair<std::string, bool>, std::unique_ptr<FontFace>> cache;
  std::lock_guard<std::mutex> lock(CacheMutex());
  auto key = std::make_pair(CaseFolded(name), bold);
  auto it = cache.find(key);
  if (it != cache.end()) return *it->second;
  const std::string family = FamilyFor(name);
  const std::string file = FindFontFile(family, bold);
  if (file.empty())
    Raise(err::kInvalidArgument, "font \"" + std::string(name) + "\" (" + family +
                                     (bold ? " Bold" : " Regular") + ") is not installed");
  auto face = std::unique_ptr<FontFace>(new FontFace(file, family, bold));
  return *cache.emplace(key, std::move(face)).first->second;
}

int32_t FontFace::Advance(char32_t cp) const {
  if (cp < 0x10000) return bmp_advances_[cp];
  std::lock_guard<std::mutex> lock(astral_mutex_);
  FT_UInt glyph = FT_Get_Char_Index(face_, cp);
  if (glyph == 0) return missing_advance_;
  FT_Fixed advance = 0;
  FT_Get_Advance(face_, glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING, &advance);
  return static_cast<int32_t>(advance);
}

uint32_t FontFace::GlyphIndex(char32_t cp) const {
  if (cp < 0x10000) return bmp_glyphs_[cp];
  std::lock_guard<std::mutex> lock(astral_mutex_);
  return FT_Get_Char_Index(face_, cp);
}

int64_t FontFace::AdvanceUnits(std::u32string_view text) const {
  int64_t sum = 0;
  for (char32_t cp : text) sum += Advance(cp);
  return sum;
}

int64_t FontFace::AdvanceUnits(std::string_view utf8) const {
  int64_t sum = 0;
  ForEachCodePoint(utf8, [&](char32_t cp) { sum += Advance(cp); });
  return sum;
}

}  // namespace quorvel
