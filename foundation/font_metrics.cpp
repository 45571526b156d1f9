// Loading of faces through fontconfig + FreeType, with a process-wide cache of loaded faces.
#include "foundation/font_metrics.hpp"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H
#include FT_ADVANCES_H
#include <fribidi.h>
#include <hb-ot.h>
#include <hb.h>

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

// A character that needs the bidirectional algorithm: strong right-to-left, Arabic digits and
// the explicit embedding and isolate controls. A text holding none of them reads left to right.
bool NeedsBidi(char32_t cp) {
  switch (fribidi_get_bidi_type(cp)) {
    case FRIBIDI_TYPE_RTL: case FRIBIDI_TYPE_AL: case FRIBIDI_TYPE_AN:
    case FRIBIDI_TYPE_RLE: case FRIBIDI_TYPE_RLO: case FRIBIDI_TYPE_LRE:
    case FRIBIDI_TYPE_LRO: case FRIBIDI_TYPE_PDF: case FRIBIDI_TYPE_LRI:
    case FRIBIDI_TYPE_RLI: case FRIBIDI_TYPE_FSI: case FRIBIDI_TYPE_PDI:
      return true;
    default:
      return false;
  }
}

hb_font_t* ShaperFor(const std::string& file) {
  hb_blob_t* blob = hb_blob_create_from_file(file.c_str());
  hb_face_t* face = hb_face_create(blob, 0);
  hb_blob_destroy(blob);
  hb_font_t* font = hb_font_create(face);
  hb_face_destroy(face);
  hb_ot_font_set_funcs(font);
  const unsigned int upem = hb_face_get_upem(hb_font_get_face(font));
  hb_font_set_scale(font, static_cast<int>(upem), static_cast<int>(upem));  // positions in font units
  hb_font_make_immutable(font);
  return font;
}

}  // namespace

FontFace::FontFace(std::string file) : file_(std::move(file)) {
  if (FT_New_Face(Library(), file_.c_str(), 0, &face_) != 0)
    Raise(err::kInvalidArgument, "font file " + file_ + " cannot be read");
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
  // Control characters have no glyph but have always been measured and drawn as they stand.
  plain_.assign(0x10000, 0);
  for (char32_t c = 0; c < 0x10000; ++c)
    plain_[c] = (bmp_glyphs_[c] != 0 || c < 0x20 || (c >= 0x7F && c < 0xA0)) && !NeedsBidi(c);
  shaper_ = ShaperFor(file_);
}


// Faces live as long as the process: devices and worker threads may hold them to the end. The
// maps themselves are never destroyed either, so no face is left unreachable at exit.
const FontFace& FontFace::FromFile(const std::string& file) {
  static auto& by_file = *new std::map<std::string, const FontFace*>;
  std::lock_guard<std::mutex> lock(CacheMutex());
  auto it = by_file.find(file);
  if (it != by_file.end()) return *it->second;
  return *by_file.emplace(file, new FontFace(file)).first->second;
}

const FontFace& FontFace::Get(std::string_view name, bool bold) {
  static auto& by_name = *new std::map<std::pair<std::string, bool>, const FontFace*>;
  // The ops of a document name one font over and over: each thread keeps its last answer
  // (faces live as long as the process, so the pointer stays good).
  thread_local std::string last_name;
  thread_local bool last_bold = false;
  thread_local const FontFace* last = nullptr;
  if (last && last_bold == bold && last_name == name) return *last;
  {
    std::lock_guard<std::mutex> lock(CacheMutex());
    auto it = by_name.find(std::make_pair(CaseFolded(name), bold));
    if (it != by_name.end()) {
      last_name = name;
      last_bold = bold;
      last = it->second;
      return *last;
    }
  }
  const std::string family = FamilyFor(name);
  const std::string file = FindFontFile(family, bold);
  if (file.empty())
    Raise(err::kInvalidArgument, "font \"" + std::string(name) + "\" (" + family +
                                     (bold ? " Bold" : " Regular") + ") is not installed");
  const FontFace& face = FromFile(file);
  std::lock_guard<std::mutex> lock(CacheMutex());
  by_name.emplace(std::make_pair(CaseFolded(name), bold), &face);
  return face;
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

namespace quorvel {

bool FontFace::PlainAdvanceUnits(std::string_view utf8, int64_t& units) const {
  int64_t sum = 0;
  size_t i = 0;
  while (i < utf8.size()) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if (byte < 0x80) {  // ASCII: always plain in a face that draws the printers' texts
      sum += bmp_advances_[byte];
      ++i;
      continue;
    }
    const char32_t cp = detail::NextCodePoint(utf8, i);
    if (cp == 0xFFFFFFFFu) detail::RaiseInvalidUtf8("text");
    if (!IsPlain(cp)) return false;
    sum += bmp_advances_[cp];
  }
  units = sum;
  return true;
}

bool FontFace::PlainAdvanceUnits(std::u32string_view text, int64_t& units) const {
  int64_t sum = 0;
  for (char32_t cp : text) {
    if (!IsPlain(cp)) return false;
    sum += bmp_advances_[cp];
  }
  units = sum;
  return true;
}

}  // namespace quorvel
