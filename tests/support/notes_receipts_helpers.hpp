// Test helpers for delivery notes and receipts: text extents and the "no rule crosses a text" check.
#pragma once

#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"

namespace quorvel::testing {

// Width of a recorded text in the font it was drawn with.
double WidthOf(const TextOp& text);
// Where a recorded text ends: x + its width.
double EndOf(const TextOp& text);
// All text ops whose text equals `text`, in drawing order.
std::vector<TextOp> AllTexts(const DrawOps& ops, const std::string& text);
// Descriptions of every line or box edge that runs through the inside of a text's box (its
// width by one line height of its size); empty when the layout is clean.
std::vector<std::string> RulesCrossingTexts(const DrawOps& ops);
// The value of one "Name: value" line of pdfinfo's output, without the blanks before it.
std::string PdfInfoField(const std::string& info, const std::string& name);

}  // namespace quorvel::testing
