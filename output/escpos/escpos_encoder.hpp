// The ESC/POS commands of a raster receipt job, appended to the job's bytes.
#pragma once

#include <string>

#include "output/escpos/escpos_raster.hpp"

namespace quorvel::escpos {

// Rows per raster block. 255 keeps the row count in one byte (yH = 0, which every firmware
// reads), and a block of 80 mm paper (72 bytes a row) at 18 KB, under the receive buffers of
// common receipt printers, so none drops data while the head is still printing the band before.
constexpr int kBandRows = 255;

// Lines fed after the picture so its end passes the cutter (about 17 mm at the default 1/6 inch
// line spacing; the head-to-cutter distance of common 80 mm printers is 12 to 16 mm).
constexpr int kFeedLines = 4;

// ESC @: the printer back to its power-on settings, whatever an earlier job left.
void AppendInitialise(std::string& job);
// GS v 0 blocks of at most kBandRows rows, top to bottom.
void AppendRaster(std::string& job, const Raster& raster);
// ESC p 0 25 250: a 50 ms pulse on drawer pin 2, then 500 ms off, the kick most drawers take.
void AppendDrawerPulse(std::string& job);
// ESC d kFeedLines, then GS V 1 (partial cut) when `cut`.
void AppendFeedAndCut(std::string& job, bool cut);

}  // namespace quorvel::escpos
