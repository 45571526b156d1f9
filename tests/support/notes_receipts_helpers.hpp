// Test helpers for delivery notes and receipts: text extents and pdfinfo fields.
#pragma once

#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "support/layout_checks.hpp"

namespace quorvel::testing {

// Width of a recorded text in the font it was drawn with.
double WidthOf(const TextOp& text);
// Where a recorded text ends: x + its width.
double EndOf(const TextOp& text);
// All text ops whose text equals `text`, in drawing order.
std::vector<TextOp> AllTexts(const DrawOps& ops, const std::string& text);
// The value of one "Name: value" line of pdfinfo's output, without the blanks before it.
std::string PdfInfoField(const std::string& info, const std::string& name);

}  // namespace quorvel::testing
