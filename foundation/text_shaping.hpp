// One line of text as shaped runs: split by direction, script and font, shaped with HarfBuzz and
// put in display order by the Unicode bidirectional algorithm (FriBidi).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/font_metrics.hpp"

namespace quorvel {

// Glyphs of one face and one direction, left to right as drawn. Positions are in the face's units.
struct ShapedRun {
  const FontFace* face = nullptr;
  bool rtl = false;
  std::vector<uint32_t> glyphs;
  std::vector<int32_t> advances;
  std::vector<int32_t> x_offsets;
  std::vector<int32_t> y_offsets;  // upwards, as HarfBuzz gives them
  // The characters of each cluster on the cluster's first glyph (as drawn), empty on the others.
  std::vector<std::u32string> chars;
  std::vector<uint32_t> clusters;  // each glyph's cluster: the index of its first character in the line
  int64_t width_units = 0;
};

struct ShapedLine {
  std::vector<ShapedRun> runs;  // visual order
  bool rtl = false;             // the paragraph direction: that of the first strong character
  std::u32string missing;       // characters no installed font has, first occurrence order
};

// Shapes one line (no CR LF) printed in `base` (the surface's font, `bold` its weight). Characters
// `base` has stay in it; others go to a fallback face. Results are cached: equal texts share one.
std::shared_ptr<const ShapedLine> ShapeLine(std::u32string_view text, const FontFace& base, bool bold);

// The characters of `text` (CR LF breaks allowed) that no installed font has, each once, in the
// order they first appear. Empty for every text the surface's font `base` draws on its own.
std::u32string MissingCharacters(std::string_view text, const FontFace& base);

// The width of a shaped line at `size_pt`, in twips.
double WidthTwips(const ShapedLine& line, double size_pt);

// True when a cut before `text[index]` would split a grapheme cluster: the character there is a
// combining mark, a joiner or a variation selector, or follows a zero-width joiner.
bool InsideCluster(std::u32string_view text, size_t index);

}  // namespace quorvel
