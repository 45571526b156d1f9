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
  // The SVG surface writes its end to the file as it is destroyed: it goes before the file.
  ~SvgDevice() override { Release(); }

 protected:
  // The whole picture's size, from every page, before the first is drawn.
  void Plan(const PageInfo& page) override {
    width_ = std::max(width_, page.width);
    height_ += page.height;
  }
  void BeginPage(const PageInfo& page) override {
    if (!file_) StartPicture();
    if (offset_ > 0) painter_->Paint(LineOp{0, offset_, page.width, offset_});  // the page break
    cairo_save(cr_);
    cairo_translate(cr_, 0, offset_);
    offset_ += page.height;
  }
  void EndPage() override { cairo_restore(cr_); }
  void EndDocument() override {
    if (!file_) StartPicture();
    cairo_status_t status = CairoStatus(cr_);
    cairo_surface_finish(target_);
    if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(target_);
    Release();
    file_->Seal();
    CheckCairo(status, "SVG " + path_);
    file_->Commit();
    results_.push_back(path_);
  }

 private:
  void StartPicture() {
    file_ = std::make_unique<AtomicFile>(path_);
    cairo_surface_t* svg = cairo_svg_surface_create_for_stream(WriteToAtomicFile, file_.get(), width_ / 20.0, height_ / 20.0);
    cairo_svg_surface_set_document_unit(svg, CAIRO_SVG_UNIT_PT);
    Open(svg);
    BeginTwipsPage(cr_, 1.0 / 20.0, width_, height_);
  }
  std::string path_;
  std::unique_ptr<AtomicFile> file_;
  double width_ = 0, height_ = 0, offset_ = 0;
};

}  // namespace

void RegisterSvgDevice() {
  RegisterDevice(FileDevice("svg", {".svg"}, [](const PrinterOutput& output) {
    return std::make_unique<SvgDevice>(output);
  }));
}

}  // namespace quorvel
