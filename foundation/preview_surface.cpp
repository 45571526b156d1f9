// Preview output: the recorded picture written by the same devices the printer uses.
#include "foundation/preview_surface.hpp"

#include "output/device.hpp"

namespace quorvel {

namespace {
void WritePicture(const DrawOps& ops, double width, double height, PrinterOutput output) {
  output.single_picture = true;
  std::unique_ptr<PageDevice> device = OpenDevice(output);
  device->Page(ops, width, height);
  device->Finish();
}

PrinterOutput To(const std::string& device, const std::string& path) {
  PrinterOutput output;
  output.device = device;
  output.path = path;
  return output;
}
}  // namespace

void PreviewSurface::Clear() {
  ops_.clear();
  ResetState();
}

void PreviewSurface::WritePng(const std::string& path, double dpi) const {
  PrinterOutput output = To("png", path);
  output.dpi = dpi;
  WritePicture(ops_, width_, height_, output);
}

void PreviewSurface::WriteSvg(const std::string& path) const { WritePicture(ops_, width_, height_, To("svg", path)); }

void PreviewSurface::WriteOps(const std::string& path) const { WritePicture(ops_, width_, height_, To("ops", path)); }

}  // namespace quorvel
