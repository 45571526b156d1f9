// The PNG device: each page a PNG file (PATH-1.png, PATH-2.png, …), or a preview's one picture.
#include <algorithm>
#include <filesystem>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "foundation/utf8.hpp"
#include "output/cairo_painter.hpp"
#include "output/device.hpp"

namespace quorvel {

namespace {

std::string PngStem(const std::string& path) {
  return LowercaseEnding(path) == ".png" ? path.substr(0, path.size() - 4) : path;
}

// Each page is rendered to a temporary file; all are renamed together when the document ends,
// and the pages of an earlier, longer print at the same path are removed, so the set on disk is
// always one print's.
class PngDevice : public CairoPaintingDevice {
 public:
  explicit PngDevice(const PrinterOutput& output)
      : path_(output.path), stem_(PngStem(output.path)), dpi_(output.dpi), single_(output.single_picture) {
    if (!(dpi_ >= 1 && dpi_ <= 2400)) Raise(err::kInvalidArgument, "PNG resolution " + std::to_string(dpi_) + " dpi: choose 1 to 2400");
    CheckWritable(single_ ? path_ : PageName(1));
  }

 protected:
  void BeginPage(const PageInfo& page) override {
    if (single_ && !pages_.empty()) Raise(err::kInvalidArgument, "a picture has one page: " + path_);
    pages_.push_back(std::make_unique<AtomicFile>(single_ ? path_ : PageName(pages_.size() + 1)));
    const double scale = dpi_ / 1440.0;
    const int pixel_width = std::max(1, static_cast<int>(page.width * scale + 0.5));
    const int pixel_height = std::max(1, static_cast<int>(page.height * scale + 0.5));
    Open(cairo_image_surface_create(CAIRO_FORMAT_RGB24, pixel_width, pixel_height));
    BeginTwipsPage(cr_, scale, page.width, page.height);
  }
  void EndPage() override {
    AtomicFile& file = *pages_.back();
    // A context in error draws nothing more: a page that lost its text must not be written.
    cairo_status_t status = CairoStatus(cr_);
    if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_write_to_png_stream(target_, WriteToAtomicFile, &file);
    Release();
    file.Seal();  // a write failure is the file's own reason, which the cairo status would hide
    CheckCairo(status, "PNG " + file.Path());
  }
  void EndDocument() override {
    CommitTogether(pages_);
    for (auto& page : pages_) results_.push_back(page->Path());
    if (single_) return;
    std::error_code ignored;
    for (size_t n = pages_.size() + 1; std::filesystem::is_regular_file(PageName(n), ignored); ++n)
      std::filesystem::remove(PageName(n), ignored);
  }

 private:
  std::string PageName(size_t n) const { return stem_ + "-" + std::to_string(n) + ".png"; }
  std::string path_, stem_;
  double dpi_;
  bool single_;
  std::vector<std::unique_ptr<AtomicFile>> pages_;
};

}  // namespace

void RegisterPngDevice() {
  DeviceEntry entry = FileDevice("png", {".png"}, [](const PrinterOutput& output) {
    return std::make_unique<PngDevice>(output);
  });
  entry.check_writable = [](const PrinterOutput& output) {
    // Numbered pages land beside the path; a probe name in the same folder answers for them.
    CheckWritable(output.single_picture ? output.path : output.path + ".check.png");
  };
  RegisterDevice(std::move(entry));
}

}  // namespace quorvel
