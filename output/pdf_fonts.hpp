// Fonts of the direct PDF device: each face parsed once per process, the glyphs a document uses,
// and their embedding as Identity-H CID fonts with a subset font file, widths and ToUnicode map.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "foundation/font_metrics.hpp"
#include "output/pdf_writer.hpp"

namespace quorvel::pdf {

struct FontSource;  // one face's parsed file, shared by every document of the process

// One face as a document uses it: its resource name, object number and the glyphs drawn.
class DocumentFont {
 public:
  DocumentFont(const FontFace& face, int object, int index);
  // Marks `glyph` used, standing for `chars` (the first text it stood for is the one kept).
  void Use(uint32_t glyph, const std::u32string& chars);
  // The same for a glyph standing for one character (plain text, the common case).
  void Use(uint32_t glyph, char32_t c) {
    if (glyph < mapped_.size() && mapped_[glyph]) return;
    Use(glyph, std::u32string(1, c));
  }
  // The face's own advance of `glyph` in font units, as the PDF's widths give it.
  int32_t AdvanceUnits(uint32_t glyph) const;
  int32_t UnitsPerEm() const;
  // The face's own advance of `glyph`, in twips at `size` points.
  double Advance(uint32_t glyph, double size) const;
  const std::string& Resource() const { return resource_; }  // "F1", "F2", …
  int Object() const { return object_; }
  const FontFace& Face() const { return *face_; }
  bool Uses(uint32_t glyph) const { return glyph < used_.size() && used_[glyph]; }
  // Writes the Type0 font, its CID font, descriptor, subset file and ToUnicode map.
  void Write(ObjectWriter& writer) const;

 private:
  std::string SubsetTag() const;
  std::string Widths() const;
  std::string ToUnicode() const;
  std::string SubsetFile() const;

  const FontFace* face_;
  const FontSource* source_;
  int object_;
  std::string resource_;
  std::vector<bool> used_;                      // by glyph id
  std::vector<bool> mapped_;                    // by glyph id: has its text in chars_
  std::map<uint32_t, std::u32string> chars_;    // what each used glyph stands for
};

}  // namespace quorvel::pdf
