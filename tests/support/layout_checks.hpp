// Test check shared by every document: which rules run through a printed text.
#pragma once

#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"

namespace quorvel::testing {

// One description per (rule, text) pair where a line or a box side runs through the inside of a
// text's box (its measured width × one line of its size). A rule along an edge, or within a twip
// of it, only touches the text.
std::vector<std::string> RulesCrossingTexts(const DrawOps& ops);

}  // namespace quorvel::testing
