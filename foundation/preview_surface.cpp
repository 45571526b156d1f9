// Preview output: the recorded picture as PNG, SVG or ops.
#include "foundation/preview_surface.hpp"

#include "foundation/atomic_file.hpp"
#include "foundation/cairo_painter.hpp"
#include "foundation/errors.hpp"

namespace quorvel {

void PreviewSurface::Clear() {
  ops_.clear();
  ResetState();
}

void PreviewSurface::WritePng(const std::string& path, double dpi) const {
  WritePagePng(ops_, width_, height_, path, dpi);
}

void PreviewSurface::WriteSvg(const std::string& path) const { WritePageSvg(ops_, width_, height_, path); }

void PreviewSurface::WriteOps(const std::string& path) const { WriteOpsFile(ops_, path); }

void WriteOpsFile(const DrawOps& ops, const std::string& path) {
  AtomicFile file(path);
  for (const DrawOp& op : ops) file.Write(OpToJson(op) + "\n");
  file.Commit();
}

}  // namespace quorvel
