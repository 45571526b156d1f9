// Cairo replay of ops: fonts through cairo-ft from the same files the metrics come from.
#include "output/cairo_painter.hpp"

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include <cmath>
#include <map>
#include <mutex>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "foundation/glyph_runs.hpp"
#include "foundation/utf8.hpp"
#include "foundation/qr_code.hpp"
#include "foundation/raster_image.hpp"

namespace quorvel {

namespace {

constexpr double kPenTwips = 10;  // the default thin pen: half a point

// Cairo's own face for a font file, created once; cairo locks it for concurrent use.
cairo_font_face_t* CairoFaceFor(const FontFace& face) {
  static std::mutex mutex;
  static std::map<const FontFace*, cairo_font_face_t*> faces;
  std::lock_guard<std::mutex> lock(mutex);
  auto it = faces.find(&face);
  if (it != faces.end()) return it->second;
  FcPattern* pattern = FcPatternCreate();
  FcPatternAddString(pattern, FC_FILE, reinterpret_cast<const FcChar8*>(face.File().c_str()));
  FcPatternAddInteger(pattern, FC_INDEX, 0);
  cairo_font_face_t* cairo_face = cairo_ft_font_face_create_for_pattern(pattern);
  FcPatternDestroy(pattern);
  faces.emplace(&face, cairo_face);
  return cairo_face;
}

cairo_font_options_t* UnhintedOptions() {
  static cairo_font_options_t* options = [] {
    cairo_font_options_t* o = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(o, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(o, CAIRO_HINT_STYLE_NONE);
    return o;
  }();
  return options;
}

}  // namespace

cairo_status_t WriteToAtomicFile(void* closure, const unsigned char* data, unsigned int length) {
  return static_cast<AtomicFile*>(closure)->TryWrite(data, length) ? CAIRO_STATUS_SUCCESS
                                                                    : CAIRO_STATUS_WRITE_ERROR;
}

void CheckCairo(cairo_status_t status, const std::string& what) {
  if (status != CAIRO_STATUS_SUCCESS)
    Raise(err::kFileError, what + ": the drawing failed: " + cairo_status_to_string(status));
}

CairoPainter::CairoPainter(cairo_t* cr) : cr_(cr) {
  cairo_set_font_options(cr_, UnhintedOptions());
  cairo_set_line_width(cr_, kPenTwips);
  cairo_set_source_rgb(cr_, 0, 0, 0);
}

// Text is drawn from its glyph runs, so that shaped and fallback text looks as it is measured.
// Each glyph carries its cluster's characters, which a PDF keeps for text extraction.
void CairoPainter::operator()(const TextOp& op) {
  for (const GlyphRun& run : GlyphRunsOf(op)) {
    if (run.face != face_) {
      face_ = run.face;
      cairo_set_font_face(cr_, CairoFaceFor(*face_));
      last_size_ = 0;
    }
    if (run.size != last_size_) {
      cairo_set_font_size(cr_, run.size * 20.0);  // user units are twips
      last_size_ = run.size;
    }
    std::vector<cairo_glyph_t> glyphs;
    std::vector<cairo_text_cluster_t> clusters;
    std::string utf8;
    for (size_t g = 0; g < run.glyphs.size(); ++g) {
      glyphs.push_back(cairo_glyph_t{run.glyphs[g], run.x[g], run.baseline - run.rise[g]});
      const std::string chars = EncodeUtf8(run.chars[g]);
      if (chars.empty() && !clusters.empty()) {
        ++clusters.back().num_glyphs;  // a further glyph of the cluster before it
        continue;
      }
      utf8 += chars;
      clusters.push_back(cairo_text_cluster_t{static_cast<int>(chars.size()), 1});
    }
    cairo_show_text_glyphs(cr_, utf8.data(), static_cast<int>(utf8.size()), glyphs.data(),
                           static_cast<int>(glyphs.size()), clusters.data(),
                           static_cast<int>(clusters.size()), cairo_text_cluster_flags_t(0));
  }
}

void CairoPainter::operator()(const LineOp& op) {
  cairo_move_to(cr_, op.x1, op.y1);
  cairo_line_to(cr_, op.x2, op.y2);
  cairo_stroke(cr_);
}

void CairoPainter::operator()(const BoxOp& op) {
  cairo_rectangle(cr_, op.x1, op.y1, op.x2 - op.x1, op.y2 - op.y1);
  cairo_stroke(cr_);
}

void CairoPainter::operator()(const QrOp& op) {
  const QrMatrix matrix = EncodeQr(op.data);
  const double side = (matrix.size + 2 * kQrQuietZone) * op.module;
  cairo_save(cr_);
  // Modules are squares that must meet edge to edge: no antialiasing seams between them.
  cairo_set_antialias(cr_, CAIRO_ANTIALIAS_NONE);
  cairo_set_source_rgb(cr_, 1, 1, 1);
  cairo_rectangle(cr_, op.x, op.y, side, side);
  cairo_fill(cr_);
  cairo_set_source_rgb(cr_, 0, 0, 0);
  const double origin_x = op.x + kQrQuietZone * op.module, origin_y = op.y + kQrQuietZone * op.module;
  for (int row = 0; row < matrix.size; ++row)
    for (int column = 0; column < matrix.size; ++column)
      if (matrix.Dark(column, row))
        cairo_rectangle(cr_, origin_x + column * op.module, origin_y + row * op.module, op.module, op.module);
  cairo_fill(cr_);
  cairo_restore(cr_);
}

void CairoPainter::operator()(const ImageOp& op) {
  const std::shared_ptr<const RasterImage> image = RasterImageFor(op.source);
  cairo_surface_t* pixels = cairo_image_surface_create(CAIRO_FORMAT_RGB24, image->width, image->height);
  cairo_surface_flush(pixels);
  unsigned char* data = cairo_image_surface_get_data(pixels);
  const int stride = cairo_image_surface_get_stride(pixels);
  for (int y = 0; y < image->height; ++y) {
    auto* row = reinterpret_cast<uint32_t*>(data + static_cast<size_t>(y) * stride);
    const uint8_t* rgb = image->rgb.data() + static_cast<size_t>(y) * image->width * 3;
    for (int x = 0; x < image->width; ++x)
      row[x] = (uint32_t{rgb[3 * x]} << 16) | (uint32_t{rgb[3 * x + 1]} << 8) | rgb[3 * x + 2];
  }
  cairo_surface_mark_dirty(pixels);
  cairo_save(cr_);
  cairo_translate(cr_, std::min(op.x1, op.x2), std::min(op.y1, op.y2));
  cairo_scale(cr_, std::abs(op.x2 - op.x1) / image->width, std::abs(op.y2 - op.y1) / image->height);
  cairo_set_source_surface(cr_, pixels, 0, 0);
  cairo_paint(cr_);
  cairo_restore(cr_);
  cairo_surface_destroy(pixels);
}

void BeginTwipsPage(cairo_t* cr, double scale, double width, double height) {
  cairo_identity_matrix(cr);
  cairo_scale(cr, scale, scale);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_rectangle(cr, 0, 0, width, height);
  cairo_fill(cr);
  cairo_set_source_rgb(cr, 0, 0, 0);
}

cairo_status_t CairoStatus(cairo_t* cr) {
  const cairo_status_t status = cairo_status(cr);
  return status != CAIRO_STATUS_SUCCESS ? status : cairo_surface_status(cairo_get_target(cr));
}

}  // namespace quorvel
