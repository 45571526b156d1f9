// A page of drawing ops rendered as the 1-bit image a thermal print head prints.
#pragma once

#include <cstdint>
#include <vector>

#include "foundation/draw_ops.hpp"

namespace quorvel::escpos {

// Rows of dots, top to bottom; each row is BytesPerRow() bytes, the leftmost dot in the high bit
// of the first byte, 1 = burnt (black). The layout a raster bit-image command takes as it is.
struct Raster {
  int width = 0;   // dots, a multiple of 8
  int height = 0;  // rows
  std::vector<uint8_t> bits;

  int BytesPerRow() const { return width / 8; }
};

// A pixel of the grey rendering prints when its luminance (0..255) is below this: text edges
// that are at least half covered burn, fainter anti-aliasing does not.
constexpr int kBlackBelow = 128;

// The page's whole width is scaled onto the printable width, the height with it (the picture
// keeps its proportions): nothing drawn on the page falls outside the paper.
double DotsPerTwip(double page_width, int dots_wide);

// Renders `ops` on a page of `width` × `height` twips through the cairo painter (the glyphs and
// rules every other device draws) at `dots_wide` dots across, then thresholds it to 1 bit.
Raster RenderRaster(const DrawOps& ops, double width, double height, int dots_wide);

}  // namespace quorvel::escpos
