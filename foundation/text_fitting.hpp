// Making free texts fit fixed widths: shorten with "...", break into lines, word-wrap, split in two.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/surface.hpp"

namespace quorvel {

// Shortens `text` to `length` twips, ending it with "..."; writes the result back into `text`.
// A text whose width equals `length` is kept. When even "...." is wider than `length` the
// routine stops once a further round could not change the text, and returns what it has.
std::string AdjustedText(Surface& obj, std::string& text, int16_t& length);

// Like AdjustedText, but inserts CRLF line breaks instead of cutting; no character is lost.
std::string AdjustedText2(Surface& obj, std::string& text, int16_t& length);

// Word-wraps `text` into `lines` (emptied first). Reduces the caller's `width` by the width of
// "W" and leaves `text` holding the last line before its leading blanks are removed. The blank
// position remembered on one line carries over to the next, which decides where lines without a
// blank of their own break.
void WrapText(Surface& obj, std::string& text, int16_t& width, std::vector<std::string>& lines);

// Appends `text` to `lines` as one line when it fits `width`, else as two: the shortest head
// ending at a blank that is at least `width` wide, then the rest. When no blank past the width
// ends such a head, the text is appended whole as one line.
void SplitInTwo(Surface& obj, const std::string& text, double width, std::vector<std::string>& lines);

}  // namespace quorvel
