// Replays drawing ops into cairo: where ops become pixels, a cairo PDF or an SVG.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

#include "foundation/draw_ops.hpp"
#include "foundation/font_metrics.hpp"
#include "output/device.hpp"

namespace quorvel {

// Paints ops on a cairo context whose user space is twips (origin top-left, y down).
// Text is set with the same faces and unhinted advances that the surfaces measure with.
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
  void operator()(const QrOp& op);
  void operator()(const ImageOp& op);
  void operator()(const PageOp&) {}
  void operator()(const EndOp&) {}

 private:
  cairo_t* cr_;
  const FontFace* face_ = nullptr;  // the previous text op's face, selected on the context
  std::string last_font_name_;
  double last_size_ = 0;
  bool last_bold_ = false;
};

// Sets up `cr` for a page of `width` twips drawn at `scale` device units per twip: white
// background and twips user space.
void BeginTwipsPage(cairo_t* cr, double scale, double width, double height);

class AtomicFile;

// A cairo write callback whose closure is an AtomicFile; a failed write stops cairo and the
// file keeps the system's reason for Seal/Commit to raise.
cairo_status_t WriteToAtomicFile(void* closure, const unsigned char* data, unsigned int length);
// Raises the file error for a cairo status other than success; `what` names the output.
void CheckCairo(cairo_status_t status, const std::string& what);
// The first error of the context or else of its surface: a context in error silently draws
// nothing more, so a device checks this before it writes a page out.
cairo_status_t CairoStatus(cairo_t* cr);

// Base of the devices that paint with cairo: every op kind goes to the painter of the context
// on the current target surface, which the base owns.
class CairoPaintingDevice : public PageDevice {
 public:
  ~CairoPaintingDevice() override { Release(); }

 protected:
  using PageDevice::PageDevice;
  // Takes `target`, and paints on a new context of it.
  void Open(cairo_surface_t* target) {
    target_ = target;
    cr_ = cairo_create(target_);
    painter_ = std::make_unique<CairoPainter>(cr_);
  }
  void Release() {
    painter_.reset();
    if (cr_) cairo_destroy(cr_);
    if (target_) cairo_surface_destroy(target_);
    cr_ = nullptr;
    target_ = nullptr;
  }
  void Draw(const TextOp& op) override { painter_->Paint(op); }
  void Draw(const LineOp& op) override { painter_->Paint(op); }
  void Draw(const BoxOp& op) override { painter_->Paint(op); }
  void Draw(const QrOp& op) override { painter_->Paint(op); }
  void Draw(const ImageOp& op) override { painter_->Paint(op); }

  cairo_surface_t* target_ = nullptr;
  cairo_t* cr_ = nullptr;
  std::unique_ptr<CairoPainter> painter_;
};

}  // namespace quorvel
