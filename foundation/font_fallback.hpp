// Fonts for the characters a surface's own font lacks, found through fontconfig by coverage.
#pragma once

#include "foundation/font_metrics.hpp"

namespace quorvel {

// The installed face that draws `cp` when the surface's font has no glyph for it: among the
// fonts covering the character, a Noto Sans family first (it sits best beside Liberation Sans),
// the bold weight when `bold` and the family has one. Null when no installed font has `cp`.
// Answers are remembered per character, so fontconfig is asked once per character per weight.
const FontFace* FallbackFace(char32_t cp, bool bold);

}  // namespace quorvel
