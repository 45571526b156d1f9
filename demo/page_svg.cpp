// Rendering ops to an SVG string through cairo's stream surface.
#include "demo/page_svg.hpp"

#include <cairo-svg.h>

#include "output/cairo_painter.hpp"
#include "foundation/errors.hpp"

namespace quorvel::demo {

namespace {
cairo_status_t AppendTo(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}
}  // namespace

std::string PageSvg(const DrawOps& ops, double width, double height, bool paper) {
  std::string svg;
  cairo_surface_t* surface = cairo_svg_surface_create_for_stream(AppendTo, &svg, width / 20.0, height / 20.0);
  cairo_svg_surface_set_document_unit(surface, CAIRO_SVG_UNIT_PT);
  cairo_t* cr = cairo_create(surface);
  if (paper) {
    BeginTwipsPage(cr, 1.0 / 20.0, width, height);
  } else {
    cairo_scale(cr, 1.0 / 20.0, 1.0 / 20.0);
    cairo_set_source_rgb(cr, 0, 0, 0);
  }
  CairoPainter(cr).PaintAll(ops);
  cairo_destroy(cr);
  cairo_surface_finish(surface);
  const cairo_status_t status = cairo_surface_status(surface);
  cairo_surface_destroy(surface);
  if (status != CAIRO_STATUS_SUCCESS)
    Raise(err::kFileError, std::string("SVG rendering failed: ") + cairo_status_to_string(status));
  return svg;
}

}  // namespace quorvel::demo
