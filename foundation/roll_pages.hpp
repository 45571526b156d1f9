// Cutting a roll page that is longer than a device can take into pieces that each fit.
#pragma once

#include <vector>

#include "foundation/draw_ops.hpp"

namespace quorvel {

// The longest page a device takes: 32,767 points (PDF's and cairo's limit), in twips.
constexpr double kLongestRollPage = 32767.0 * 20;

struct RollPiece {
  DrawOps ops;    // moved up so that the piece starts at 0
  double length;  // from 0 to the lowest point drawn (or the pen, for the last piece)
};

// The ops of one roll page as pieces of at most `longest` twips, cut only between ops so that
// no text or rule is split; a page that fits is one piece, its ops unchanged. `line_per_point`
// is the line height per point of font size; `pen_y` the surface's CurrentY, so the feed after
// the last line stays on the slip. A single op longer than `longest` raises the invalid-argument
// error, as it cannot be drawn whole on any piece.
std::vector<RollPiece> CutRoll(const DrawOps& ops, double line_per_point, double pen_y,
                               double longest = kLongestRollPage);

// `op` moved down by `dy` twips.
DrawOp ShiftedOp(DrawOp op, double dy);

}  // namespace quorvel
