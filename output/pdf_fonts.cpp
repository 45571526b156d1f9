// Embedding fonts in the direct PDF: hb-subset cuts each face to the glyphs a document used,
// keeping glyph ids, so the content streams can name glyphs before the subset exists.
#include "output/pdf_fonts.hpp"

#include <hb-ot.h>
#include <hb-subset.h>
#include <hb.h>

#include <map>
#include <memory>
#include <mutex>

#include "foundation/errors.hpp"

namespace quorvel::pdf {

// What the PDF needs of a face, read once per process and never changed after.
struct FontSource {
  hb_face_t* face = nullptr;
  std::string postscript_name;
  int units_per_em = 1000;
  int bbox[4] = {0, 0, 0, 0};
  int ascent = 0, descent = 0, cap_height = 0;
  std::vector<int32_t> advances;  // by glyph id, font units
};

namespace {

int16_t ReadInt16(const char* data) {
  return static_cast<int16_t>((static_cast<uint8_t>(data[0]) << 8) | static_cast<uint8_t>(data[1]));
}

std::unique_ptr<FontSource> LoadSource(const FontFace& face) {
  auto source = std::make_unique<FontSource>();
  hb_blob_t* blob = hb_blob_create_from_file_or_fail(face.File().c_str());
  if (!blob) Raise(err::kFileError, "font file " + face.File() + " cannot be read");
  source->face = hb_face_create(blob, 0);
  hb_blob_destroy(blob);
  source->units_per_em = static_cast<int>(hb_face_get_upem(source->face));
  char name[128];
  unsigned int length = sizeof name;
  hb_ot_name_get_utf8(source->face, HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &length, name);
  source->postscript_name = length > 0 ? std::string(name, length) : "Font";
  for (char& c : source->postscript_name)  // PDF names: no blanks or delimiters
    if (c <= ' ' || c > '~' || std::string_view("()<>[]{}/%#").find(c) != std::string_view::npos) c = '-';
  hb_blob_t* head = hb_face_reference_table(source->face, HB_TAG('h', 'e', 'a', 'd'));
  unsigned int head_length = 0;
  const char* data = hb_blob_get_data(head, &head_length);
  if (head_length >= 44)
    for (int i = 0; i < 4; ++i) source->bbox[i] = ReadInt16(data + 36 + 2 * i);
  hb_blob_destroy(head);
  hb_font_t* font = hb_font_create(source->face);  // scale defaults to units per em
  hb_font_extents_t extents{};
  hb_font_get_h_extents(font, &extents);
  source->ascent = extents.ascender;
  source->descent = extents.descender;
  hb_position_t cap = 0;
  source->cap_height = hb_ot_metrics_get_position(font, HB_OT_METRICS_TAG_CAP_HEIGHT, &cap) ? cap : extents.ascender;
  const unsigned int glyphs = hb_face_get_glyph_count(source->face);
  source->advances.resize(glyphs);
  for (unsigned int g = 0; g < glyphs; ++g) source->advances[g] = hb_font_get_glyph_h_advance(font, g);
  hb_font_destroy(font);
  return source;
}

// Parsed once per process: later documents reuse the face, its advances and names.
const FontSource& SourceFor(const FontFace& face) {
  static std::mutex mutex;
  // Never destroyed: a parsed face lives as long as the process, and exit leaves it reachable.
  static auto& sources = *new std::map<const FontFace*, std::unique_ptr<FontSource>>;
  std::lock_guard<std::mutex> lock(mutex);
  auto& source = sources[&face];
  if (!source) source = LoadSource(face);
  return *source;
}

void AppendUtf16(std::string& out, const std::u32string& chars) {
  for (char32_t c : chars) {
    if (c >= 0x10000) {
      AppendHex(out, 0xD800 + ((c - 0x10000) >> 10), 4);
      AppendHex(out, 0xDC00 + ((c - 0x10000) & 0x3FF), 4);
    } else {
      AppendHex(out, c, 4);
    }
  }
}

}  // namespace

DocumentFont::DocumentFont(const FontFace& face, int object, int index)
    : face_(&face), source_(&SourceFor(face)), object_(object), resource_("F" + std::to_string(index)) {
  used_.resize(source_->advances.size());
  mapped_.resize(source_->advances.size());
}

void DocumentFont::Use(uint32_t glyph, const std::u32string& chars) {
  if (glyph >= used_.size()) Raise(err::kInvalidArgument, "glyph " + std::to_string(glyph) + " is not in " + face_->File());
  used_[glyph] = true;
  // The first text a glyph stands for is kept (a glyph first seen inside a cluster has none yet).
  if (!mapped_[glyph] && !chars.empty()) {
    mapped_[glyph] = true;
    chars_[glyph] = chars;
  }
}

int32_t DocumentFont::AdvanceUnits(uint32_t glyph) const {
  return glyph < source_->advances.size() ? source_->advances[glyph] : 0;
}

int32_t DocumentFont::UnitsPerEm() const { return source_->units_per_em; }

double DocumentFont::Advance(uint32_t glyph, double size) const {
  return glyph < source_->advances.size() ? source_->advances[glyph] * size * 20.0 / source_->units_per_em : 0;
}

std::string DocumentFont::SubsetTag() const {
  // Six capitals from the glyph set: the same glyphs give the same name.
  uint64_t hash = 1469598103934665603ull;
  for (size_t g = 0; g < used_.size(); ++g)
    if (used_[g]) hash = (hash ^ g) * 1099511628211ull;
  std::string tag;
  for (int i = 0; i < 6; ++i, hash /= 26) tag += static_cast<char>('A' + hash % 26);
  return tag + "+";
}

std::string DocumentFont::Widths() const {
  // Runs of consecutive glyph ids share one array: [first [w w w] first [w] …].
  std::string out = "[";
  size_t g = 0;
  while (g < used_.size()) {
    if (!used_[g]) {
      ++g;
      continue;
    }
    AppendInt(out, static_cast<int64_t>(g));
    out += '[';
    for (; g < used_.size() && used_[g]; ++g) {
      AppendNumber(out, source_->advances[g] * 1000.0 / source_->units_per_em);
      out += ' ';
    }
    out.back() = ']';
  }
  out += ']';
  return out;
}

std::string DocumentFont::ToUnicode() const {
  std::string out =
      "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
      "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n"
      "/CMapName/Adobe-Identity-UCS def\n/CMapType 2 def\n"
      "1 begincodespacerange\n<0000><FFFF>\nendcodespacerange\n";
  auto entry = chars_.begin();
  for (size_t left = chars_.size(); left > 0;) {  // at most 100 entries a block
    const size_t block = std::min<size_t>(left, 100);
    AppendInt(out, static_cast<int64_t>(block));
    out += " beginbfchar\n";
    for (size_t i = 0; i < block; ++i, ++entry) {
      out += '<';
      AppendHex(out, entry->first, 4);
      out += "><";
      AppendUtf16(out, entry->second);
      out += ">\n";
    }
    out += "endbfchar\n";
    left -= block;
  }
  out += "endcmap\nCMapName currentdict/CMap defineresource pop\nend\nend\n";
  return out;
}

std::string DocumentFont::SubsetFile() const {
  hb_subset_input_t* input = hb_subset_input_create_or_fail();
  if (!input) Raise(err::kFileError, "out of memory for the font subset of " + face_->File());
  hb_set_t* glyphs = hb_subset_input_glyph_set(input);
  for (size_t g = 0; g < used_.size(); ++g)
    if (used_[g]) hb_set_add(glyphs, static_cast<hb_codepoint_t>(g));
  // Glyph ids stay as drawn; hinting and layout tables are of no use inside a PDF.
  hb_subset_input_set_flags(input, HB_SUBSET_FLAGS_RETAIN_GIDS | HB_SUBSET_FLAGS_NO_HINTING);
  hb_set_t* dropped = hb_subset_input_set(input, HB_SUBSET_SETS_DROP_TABLE_TAG);
  for (hb_tag_t tag : {HB_TAG('G', 'S', 'U', 'B'), HB_TAG('G', 'P', 'O', 'S'), HB_TAG('G', 'D', 'E', 'F'),
                       HB_TAG('k', 'e', 'r', 'n'), HB_TAG('n', 'a', 'm', 'e'), HB_TAG('D', 'S', 'I', 'G')})
    hb_set_add(dropped, tag);
  hb_face_t* subset = hb_subset_or_fail(source_->face, input);
  hb_subset_input_destroy(input);
  if (!subset) Raise(err::kFileError, "the font " + face_->File() + " could not be subset");
  hb_blob_t* blob = hb_face_reference_blob(subset);
  unsigned int length = 0;
  const char* data = hb_blob_get_data(blob, &length);
  std::string bytes(data ? data : "", length);
  hb_blob_destroy(blob);
  hb_face_destroy(subset);
  if (bytes.empty()) Raise(err::kFileError, "the font subset of " + face_->File() + " is empty");
  return bytes;
}

void DocumentFont::Write(ObjectWriter& writer) const {
  const int cid_font = writer.Reserve(), descriptor = writer.Reserve(), file = writer.Reserve(),
            to_unicode = writer.Reserve();
  const std::string name = SubsetTag() + source_->postscript_name;
  const double em = 1000.0 / source_->units_per_em;
  std::string& type0 = writer.Begin(object_);
  type0 += "<</Type/Font/Subtype/Type0/BaseFont/" + name + "/Encoding/Identity-H/DescendantFonts[";
  AppendInt(type0, cid_font);
  type0 += " 0 R]/ToUnicode ";
  AppendInt(type0, to_unicode);
  type0 += " 0 R>>";
  writer.End();
  std::string& cid = writer.Begin(cid_font);
  cid += "<</Type/Font/Subtype/CIDFontType2/BaseFont/" + name +
         "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor ";
  AppendInt(cid, descriptor);
  cid += " 0 R/CIDToGIDMap/Identity/W " + Widths() + ">>";
  writer.End();
  std::string& desc = writer.Begin(descriptor);
  desc += "<</Type/FontDescriptor/FontName/" + name + "/Flags 32/FontBBox[";
  for (int i = 0; i < 4; ++i) {
    AppendNumber(desc, source_->bbox[i] * em);
    desc += i < 3 ? " " : "]";
  }
  desc += "/ItalicAngle 0/Ascent ";
  AppendNumber(desc, source_->ascent * em);
  desc += "/Descent ";
  AppendNumber(desc, source_->descent * em);
  desc += "/CapHeight ";
  AppendNumber(desc, source_->cap_height * em);
  desc += "/StemV 80/FontFile2 ";
  AppendInt(desc, file);
  desc += " 0 R>>";
  writer.End();
  const std::string font_file = SubsetFile();
  writer.DeflatedStream(file, "/Length1 " + std::to_string(font_file.size()), font_file);
  const std::string cmap = ToUnicode();
  writer.DeflatedStream(to_unicode, "", cmap);
}

}  // namespace quorvel::pdf
