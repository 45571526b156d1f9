// A drawn text op as positioned glyphs: what every device draws, so that all of them agree on
// which glyphs stand where. The one seam between text handling and the devices.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "foundation/font_metrics.hpp"

namespace quorvel {

// Glyphs of one face, in visual order (left to right as drawn).
struct GlyphRun {
  const FontFace* face = nullptr;
  double size = 10;                  // points
  double baseline = 0;               // y of the baseline, twips, the same for every run of an op
  std::vector<uint32_t> glyphs;      // glyph ids of `face`
  std::vector<double> x;             // each glyph's pen position, twips, absolute on the page
  std::vector<double> advances;      // each glyph's advance, twips
  // The logical text each glyph stands for: the characters of its cluster on the cluster's
  // first glyph, empty on the others. Feeds text extraction (a PDF's ToUnicode map).
  std::vector<std::u32string> chars;
  // Each glyph's raise above the baseline, twips (marks placed by shaping); zero for plain text.
  std::vector<double> rise;
  bool rtl = false;                  // the run reads right to left (its glyphs are still drawn left to right)
};

// The runs that draw `op`. Text wholly covered by the op's face is laid out glyph for glyph
// with the face's own advances (no kerning, no ligatures), exactly as the surfaces measure it.
// Any other text is itemized by font and direction, shaped, and returned in display order.
std::vector<GlyphRun> GlyphRunsOf(const TextOp& op);

// The op's face when its text is plain (every character the face's own glyph, left to right,
// advances summed with no kerning): GlyphRunsOf then gives one run of glyph after glyph from
// op.x, so a device may walk the text itself without building the run. Null otherwise.
const FontFace* PlainFaceOf(const TextOp& op);

}  // namespace quorvel
