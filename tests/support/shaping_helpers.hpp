// Test helpers for shaped text: HarfBuzz's own hb-shape tool as the independent reference.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "foundation/glyph_runs.hpp"

namespace quorvel::testing {

struct ReferenceGlyph {
  uint32_t glyph = 0;
  int32_t advance = 0;  // font units
};

// What `hb-shape` gives for `text` in the font file, glyphs as drawn from left to right.
std::vector<ReferenceGlyph> HbShape(const std::string& font_file, const std::u32string& text);

// The characters a run stands for, in reading order (a right-to-left run's glyphs reversed).
std::u32string LogicalText(const GlyphRun& run);

// Every run that draws `op` has hb-shape's glyphs and advances for its font file and its text,
// and no missing-glyph box (glyph 0).
void ExpectRunsShapedAsHbShape(const TextOp& op);

// pdftotext's text of a PDF with the direction marks it adds around right-to-left lines removed.
std::string PdfText(const std::string& pdf);

}  // namespace quorvel::testing
