// Rendering a page to a grey image with cairo and thresholding it to the print head's dots.
#include "output/escpos/escpos_raster.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "output/cairo_painter.hpp"
#include "foundation/errors.hpp"

namespace quorvel::escpos {

namespace {

struct ImageDeleter {
  void operator()(cairo_surface_t* image) const { cairo_surface_destroy(image); }
};

// The image's pixels, one byte per dot, 1 where the grey rendering is dark enough to burn.
void Threshold(cairo_surface_t* image, Raster& raster) {
  cairo_surface_flush(image);
  const unsigned char* data = cairo_image_surface_get_data(image);
  const int stride = cairo_image_surface_get_stride(image);
  raster.bits.assign(static_cast<size_t>(raster.BytesPerRow()) * raster.height, 0);
  for (int y = 0; y < raster.height; ++y) {
    const auto* row = reinterpret_cast<const uint32_t*>(data + static_cast<size_t>(y) * stride);
    uint8_t* out = raster.bits.data() + static_cast<size_t>(y) * raster.BytesPerRow();
    for (int x = 0; x < raster.width; ++x) {
      const uint32_t pixel = row[x];  // RGB24: 0x00RRGGBB in native order
      const int r = (pixel >> 16) & 0xff, g = (pixel >> 8) & 0xff, b = pixel & 0xff;
      // Integer Rec. 601 luma: the same weights any grey conversion of the picture uses.
      if ((299 * r + 587 * g + 114 * b) / 1000 < kBlackBelow) out[x / 8] |= 0x80 >> (x % 8);
    }
  }
}

}  // namespace

double DotsPerTwip(double page_width, int dots_wide) { return dots_wide / page_width; }

Raster RenderRaster(const DrawOps& ops, double width, double height, int dots_wide) {
  if (!(width > 0) || !(height > 0) || dots_wide <= 0 || dots_wide % 8 != 0)
    Raise(err::kInvalidArgument, "an ESC/POS page needs a positive size and a width of whole bytes");
  const double scale = DotsPerTwip(width, dots_wide);
  Raster raster;
  raster.width = dots_wide;
  // Rounded as the PNG pages are, so that both devices give a page the same number of rows.
  raster.height = std::max(1, static_cast<int>(height * scale + 0.5));
  std::unique_ptr<cairo_surface_t, ImageDeleter> image(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, raster.width, raster.height));
  if (cairo_surface_status(image.get()) != CAIRO_STATUS_SUCCESS)
    Raise(err::kFileError, "ESC/POS page of " + std::to_string(raster.height) + " rows: " +
                               cairo_status_to_string(cairo_surface_status(image.get())));
  cairo_t* cr = cairo_create(image.get());
  BeginTwipsPage(cr, scale, width, height);
  CairoPainter(cr).PaintAll(ops);
  cairo_destroy(cr);
  Threshold(image.get(), raster);
  return raster;
}

}  // namespace quorvel::escpos
