// Shared pieces of every paged document: the title, the page-number line at the foot, right-aligned amounts.
#pragma once

#include <string>

#include "foundation/surface.hpp"

namespace quorvel {

// Prints `label` ("Page 2") at the foot of the page: from Height − BottomReserve, `blank_lines`
// empty lines down, in 8 pt, starting where "Page xx" would end at Width − 1000 (so the number's
// left end stays put on every page). Afterwards the size is 10 and CurrentY is back where it was.
void PrintPageNumber(Surface& surface, int blank_lines, const std::string& label);

// Prints `text` so that it ends at `right_edge`, at the current CurrentY.
void PrintRightAligned(Surface& surface, double right_edge, const std::string& text);

// Prints a document's title from x 1000 in 24 pt, back to 10 pt after it; returns the y it was
// printed at, where the blocks level with the title start.
double PrintDocumentTitle(Surface& surface, const std::string& title);

// The y below which a page holds no more lines: Height − BottomReserve.
double PageLimit(const Surface& surface);

}  // namespace quorvel
