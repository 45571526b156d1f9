// Replays drawing ops into cairo: where ops become pixels, a cairo PDF or an SVG.
#pragma once

#include <cairo.h>

#include <string>

#include "foundation/draw_ops.hpp"
#include "foundation/surface.hpp"

namespace quorvel {

// Paints ops on a cairo context whose user space is twips (origin top-left, y down). Text is
// drawn as the glyph runs every device draws, at the positions the surfaces measured.
class CairoPainter {
 public:
  explicit CairoPainter(cairo_t* cr);
  void Paint(const DrawOp& op) { std::visit(*this, op); }
  void PaintAll(const DrawOps& ops) {
    for (const DrawOp& op : ops) Paint(op);
  }

  void operator()(const TextOp& op);
  void operator()(const LineOp& op);
  void operator()(const BoxOp& op);
  void operator()(const PageOp&) {}
  void operator()(const EndOp&) {}

 private:
  cairo_t* cr_;
  const FontFace* face_ = nullptr;  // the face selected on the context
  double size_ = 0;                 // and its size in points
  std::vector<cairo_glyph_t> glyphs_;  // reused between ops
};

// Sets up `cr` for a page of `width` twips drawn at `scale` device units per twip: white
// background and twips user space.
void BeginTwipsPage(cairo_t* cr, double scale, double width, double height);

// A surface that draws each op straight into a cairo context (no recording).
class CairoSurface : public Surface {
 public:
  CairoSurface(cairo_t* cr, double width, double height) : painter_(cr), width_(width), height_(height) {}
  double Width() const override { return width_; }
  double Height() const override { return height_; }

 protected:
  void Emit(DrawOp op) override { painter_.Paint(op); }

 private:
  CairoPainter painter_;
  double width_, height_;
};

// cairo's write callback onto a stdio stream.
cairo_status_t WriteCairoToFile(void* closure, const unsigned char* data, unsigned int length);
// Raises the file error naming `what` unless `status` is success.
void CheckCairo(cairo_status_t status, const std::string& what);

}  // namespace quorvel
