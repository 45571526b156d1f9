// The SVG device: one SVG file; the pages of a longer document stand one under the other.
#include <cairo-svg.h>

#include <algorithm>

#include "foundation/atomic_file.hpp"
#include "output/cairo_painter.hpp"
#include "output/device.hpp"

namespace quorvel {

namespace {

// The picture's size is known only once every page is, so the pages come all at once at the end.
class SvgDevice : public CairoPaintingDevice {
 public:
  explicit SvgDevice(const PrinterOutput& output) : CairoPaintingDevice(Needs::WholeDocument), path_(output.path) {
    CheckWritable(path_);
  }
  ~SvgDevice() override { Release(); }

 protected:
  // The whole picture's size, from every page, before the first is drawn.
  void Plan(const PageInfo& page) override {
    width_ = std::max(width_, page.width);
    height_ += page.height;
  }
  void BeginPage(const PageInfo& page) override {
    if (!file_) Open();
    if (offset_ > 0) painter_->Paint(LineOp{0, offset_, page.width, offset_});  // the page break
    cairo_save(cr_);
    cairo_translate(cr_, 0, offset_);
    offset_ += page.height;
  }
  void EndPage() override { cairo_restore(cr_); }
  void EndDocument() override {
    if (!file_) Open();
    cairo_status_t status = CairoStatus(cr_);
    cairo_surface_finish(svg_);
    if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(svg_);
    Release();
    file_->Seal();
    CheckCairo(status, "SVG " + path_);
    file_->Commit();
    results_.push_back(path_);
  }

 private:
  void Open() {
    file_ = std::make_unique<AtomicFile>(path_);
    svg_ = cairo_svg_surface_create_for_stream(WriteToAtomicFile, file_.get(), width_ / 20.0, height_ / 20.0);
    cairo_svg_surface_set_document_unit(svg_, CAIRO_SVG_UNIT_PT);
    cr_ = cairo_create(svg_);
    BeginTwipsPage(cr_, 1.0 / 20.0, width_, height_);
    painter_ = std::make_unique<CairoPainter>(cr_);
  }
  void Release() {
    painter_.reset();
    if (cr_) cairo_destroy(cr_);
    if (svg_) cairo_surface_destroy(svg_);
    cr_ = nullptr;
    svg_ = nullptr;
  }
  std::string path_;
  std::unique_ptr<AtomicFile> file_;
  cairo_surface_t* svg_ = nullptr;
  cairo_t* cr_ = nullptr;
  double width_ = 0, height_ = 0, offset_ = 0;
};

}  // namespace

void RegisterSvgDevice() {
  RegisterDevice(FileDevice("svg", {".svg"}, [](const PrinterOutput& output) {
    return std::make_unique<SvgDevice>(output);
  }));
}

}  // namespace quorvel
