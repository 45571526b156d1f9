// Cairo replay of ops: glyph runs through cairo-ft faces of the same files the metrics come from.
#include "output/cairo_painter.hpp"

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include <map>
#include <mutex>

#include "foundation/errors.hpp"
#include "foundation/glyph_runs.hpp"

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

CairoPainter::CairoPainter(cairo_t* cr) : cr_(cr) {
  cairo_set_font_options(cr_, UnhintedOptions());
  cairo_set_line_width(cr_, kPenTwips);
  cairo_set_source_rgb(cr_, 0, 0, 0);
}

void CairoPainter::operator()(const TextOp& op) {
  for (const GlyphRun& run : GlyphRunsOf(op)) {
    // Nearly every run uses the previous run's face and size: set them only when they change.
    if (run.face != face_) {
      cairo_set_font_face(cr_, CairoFaceFor(*run.face));
      face_ = run.face;
      size_ = 0;
    }
    if (run.size != size_) {
      cairo_set_font_size(cr_, run.size * 20.0);  // user units are twips
      size_ = run.size;
    }
    glyphs_.resize(run.glyphs.size());
    for (size_t i = 0; i < run.glyphs.size(); ++i) glyphs_[i] = {run.glyphs[i], run.x[i], run.baseline};
    cairo_show_glyphs(cr_, glyphs_.data(), static_cast<int>(glyphs_.size()));
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

void BeginTwipsPage(cairo_t* cr, double scale, double width, double height) {
  cairo_identity_matrix(cr);
  cairo_scale(cr, scale, scale);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_rectangle(cr, 0, 0, width, height);
  cairo_fill(cr);
  cairo_set_source_rgb(cr, 0, 0, 0);
}

cairo_status_t WriteCairoToFile(void* closure, const unsigned char* data, unsigned int length) {
  return fwrite(data, 1, length, static_cast<FILE*>(closure)) == length ? CAIRO_STATUS_SUCCESS
                                                                         : CAIRO_STATUS_WRITE_ERROR;
}

void CheckCairo(cairo_status_t status, const std::string& what) {
  if (status != CAIRO_STATUS_SUCCESS)
    Raise(err::kFileError, what + ": " + cairo_status_to_string(status));
}

}  // namespace quorvel
