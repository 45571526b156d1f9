// The in-memory surface: records every op in order, with no pages (later pages overprint the first).
#pragma once

#include <string>

#include "foundation/surface.hpp"

namespace quorvel {

class PreviewSurface : public Surface {
 public:
  // A picture the size of an A4 page unless told otherwise.
  explicit PreviewSurface(double width = 11906, double height = 16838)
      : width_(width), height_(height) {}
  double Width() const override { return width_; }
  double Height() const override { return height_; }

  // A preview has no NewPage; its EndDoc does nothing, so a document routine may end on it.
  void EndDoc() override {}

  const DrawOps& Ops() const { return ops_; }
  void Clear();

  void WritePng(const std::string& path, double dpi = 96) const;
  void WriteSvg(const std::string& path) const;
  void WriteOps(const std::string& path) const;

 protected:
  void Emit(DrawOp op) override { ops_.push_back(std::move(op)); }

 private:
  double width_, height_;
  DrawOps ops_;
};

}  // namespace quorvel
