// The PNG device: each page a PNG file (PATH-1.png, PATH-2.png, …), or a preview's one picture.
#include <algorithm>
#include <filesystem>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "output/cairo_painter.hpp"
#include "output/device.hpp"

namespace quorvel {

namespace {

// Each page is rendered to a temporary file; all are renamed together when the document ends.
class PngDevice : public PageDevice {
 public:
  explicit PngDevice(const PrinterOutput& output)
      : stem_(output.path), dpi_(output.dpi), single_(output.single_picture) {
    if (single_) return;
    std::string ending = std::filesystem::path(stem_).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(), [](unsigned char c) { return std::tolower(c); });
    if (ending == ".png") stem_.erase(stem_.size() - 4);
    CheckWritable(stem_ + "-1.png");
  }
  ~PngDevice() override { Release(); }

 protected:
  void BeginPage(const PageInfo& page) override {
    if (single_ && !pages_.empty()) Raise(err::kInvalidArgument, "a picture has one page: " + stem_);
    const std::string name = single_ ? stem_ : stem_ + "-" + std::to_string(pages_.size() + 1) + ".png";
    pages_.push_back(std::make_unique<AtomicFile>(name));
    const double scale = dpi_ / 1440.0;
    const int pixel_width = std::max(1, static_cast<int>(page.width * scale + 0.5));
    const int pixel_height = std::max(1, static_cast<int>(page.height * scale + 0.5));
    image_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24, pixel_width, pixel_height);
    cr_ = cairo_create(image_);
    BeginTwipsPage(cr_, scale, page.width, page.height);
    painter_ = std::make_unique<CairoPainter>(cr_);
  }
  void Draw(const TextOp& op) override { (*painter_)(op); }
  void Draw(const LineOp& op) override { (*painter_)(op); }
  void Draw(const BoxOp& op) override { (*painter_)(op); }
  void EndPage() override {
    AtomicFile& file = *pages_.back();
    const cairo_status_t status = cairo_surface_write_to_png_stream(image_, WriteCairoToFile, file.Stream());
    Release();
    CheckCairo(status, "PNG " + file.Path());
  }
  void EndDocument() override {
    for (auto& page : pages_) {
      page->Commit();
      results_.push_back(page->Path());
    }
  }

 private:
  void Release() {
    painter_.reset();
    if (cr_) cairo_destroy(cr_);
    if (image_) cairo_surface_destroy(image_);
    cr_ = nullptr;
    image_ = nullptr;
  }
  std::string stem_;
  double dpi_;
  bool single_;
  std::vector<std::unique_ptr<AtomicFile>> pages_;
  cairo_surface_t* image_ = nullptr;
  cairo_t* cr_ = nullptr;
  std::unique_ptr<CairoPainter> painter_;
};

}  // namespace

void RegisterPngDevice() {
  RegisterDevice({"png", {".png"}, true, true,
                  [](const PrinterOutput& output) { return std::make_unique<PngDevice>(output); }});
}

}  // namespace quorvel
