// One page of drawing ops as an SVG document in memory, for serving without a temporary file.
#pragma once

#include <string>

#include "foundation/draw_ops.hpp"

namespace quorvel::demo {

// Renders like WritePageSvg: twips user space, the page 1/20 of its twips in points. Without
// `paper` the page stays transparent, so that pictures of several prints can be laid over
// one another.
std::string PageSvg(const DrawOps& ops, double width, double height, bool paper = true);

}  // namespace quorvel::demo
