// Cairo replay of ops: fonts through cairo-ft from the same files the metrics come from.
#include "foundation/cairo_painter.hpp"

#include <cairo-ft.h>
#include <cairo-svg.h>
#include <fontconfig/fontconfig.h>

#include <map>
#include <mutex>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"

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

void CairoPainter::operator()(const TextOp& op) {
  // Nearly every op uses the previous op's face: look it up (a locked map search) only when the
  // name or weight changes.
  if (!face_ || op.font != last_font_name_ || op.bold != last_bold_) {
    face_ = &FontFace::Get(op.font, op.bold);
    cairo_set_font_face(cr_, CairoFaceFor(*face_));
    last_font_name_ = op.font;
    last_bold_ = op.bold;
    last_size_ = 0;
  }
  if (op.size != last_size_) {
    cairo_set_font_size(cr_, op.size * 20.0);  // user units are twips
    last_size_ = op.size;
  }
  const FontFace& face = *face_;
  const double baseline = op.y + face.Ascender() * TwipsPerUnit(face, op.size);
  cairo_move_to(cr_, op.x, baseline);
  cairo_show_text(cr_, op.text.c_str());
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

void WritePagePng(const DrawOps& ops, double width, double height, AtomicFile& file, double dpi) {
  const double scale = dpi / 1440.0;
  const int pixel_width = std::max(1, static_cast<int>(width * scale + 0.5));
  const int pixel_height = std::max(1, static_cast<int>(height * scale + 0.5));
  cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, pixel_width, pixel_height);
  cairo_t* cr = cairo_create(image);
  BeginTwipsPage(cr, scale, width, height);
  CairoPainter(cr).PaintAll(ops);
  // A context in error draws nothing more: a page that lost its text must not be written.
  cairo_status_t status = cairo_status(cr);
  cairo_destroy(cr);
  if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_write_to_png_stream(image, WriteToAtomicFile, &file);
  cairo_surface_destroy(image);
  file.Seal();  // a write failure is the file's own reason, which the cairo status would hide
  CheckCairo(status, "PNG " + file.Path());
}

void WritePagePng(const DrawOps& ops, double width, double height, const std::string& path, double dpi) {
  AtomicFile file(path);
  WritePagePng(ops, width, height, file, dpi);
  file.Commit();
}

void WritePageSvg(const DrawOps& ops, double width, double height, const std::string& path) {
  AtomicFile file(path);
  cairo_surface_t* svg = cairo_svg_surface_create_for_stream(WriteToAtomicFile, &file, width / 20.0, height / 20.0);
  cairo_svg_surface_set_document_unit(svg, CAIRO_SVG_UNIT_PT);
  cairo_t* cr = cairo_create(svg);
  BeginTwipsPage(cr, 1.0 / 20.0, width, height);
  CairoPainter(cr).PaintAll(ops);
  cairo_status_t status = cairo_status(cr);
  cairo_destroy(cr);
  cairo_surface_finish(svg);
  if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(svg);
  cairo_surface_destroy(svg);
  file.Seal();
  CheckCairo(status, "SVG " + path);
  file.Commit();
}

}  // namespace quorvel
