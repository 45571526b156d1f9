// Scoped font state and the named strokes every layout draws: a rule and a box.
#pragma once

#include "foundation/surface.hpp"

namespace quorvel {

// Remembers the surface font's size and bold on entering a block and puts them back on leaving
// it, however the block is left: a routine that changes the font for a caption row or a bold
// label cannot leak the change into what the caller prints next.
class ScopedFont {
 public:
  explicit ScopedFont(Surface& surface)
      : surface_(surface), size_(surface.Font().Size()), bold_(surface.Font().Bold()) {}
  ~ScopedFont() {
    surface_.Font().Size(size_);
    surface_.Font().Bold(bold_);
  }
  ScopedFont(const ScopedFont&) = delete;
  ScopedFont& operator=(const ScopedFont&) = delete;

 private:
  Surface& surface_;
  double size_;
  bool bold_;
};

// A straight ruled line (the surface's line form 4), in black.
inline void DrawRule(Surface& surface, double x1, double y1, double x2, double y2) {
  surface.Line(4, x1, y1, x2, y2, 0);
}

// A rectangle outline from corner to corner (the surface's line form 20), in black.
inline void DrawBox(Surface& surface, double x1, double y1, double x2, double y2) {
  surface.Line(20, x1, y1, x2, y2, 0);
}

// The rule under a row of column captions: from the left margin to the right margin at CurrentY.
inline void DrawCaptionRule(Surface& surface) {
  DrawRule(surface, 1000, surface.CurrentY(), surface.Width() - 1000, surface.CurrentY());
}

}  // namespace quorvel
