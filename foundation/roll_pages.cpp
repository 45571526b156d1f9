// Roll pages cut between ops, so that a long slip keeps every line instead of being clipped.
#include "foundation/roll_pages.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "foundation/errors.hpp"
#include "foundation/qr_code.hpp"

namespace quorvel {

namespace {
struct Extent {
  double top, bottom;
};

struct ExtentOf {
  double line_per_point;
  Extent operator()(const TextOp& t) const { return {t.y, t.y + line_per_point * t.size}; }
  Extent operator()(const LineOp& l) const { return {std::min(l.y1, l.y2), std::max(l.y1, l.y2)}; }
  Extent operator()(const BoxOp& b) const { return {std::min(b.y1, b.y2), std::max(b.y1, b.y2)}; }
  Extent operator()(const QrOp& q) const { return {q.y, q.y + QrSideModules(q.data) * q.module}; }
  Extent operator()(const ImageOp& i) const { return {std::min(i.y1, i.y2), std::max(i.y1, i.y2)}; }
  Extent operator()(const PageOp&) const { return {0, 0}; }
  Extent operator()(const EndOp&) const { return {0, 0}; }
};

// Moves an op down by dy; a visitor, so that an op kind added later must say how it moves.
struct ShiftBy {
  double dy;
  void operator()(TextOp& t) const { t.y += dy; }
  void operator()(LineOp& l) const { l.y1 += dy, l.y2 += dy; }
  void operator()(BoxOp& b) const { b.y1 += dy, b.y2 += dy; }
  void operator()(QrOp& q) const { q.y += dy; }
  void operator()(ImageOp& i) const { i.y1 += dy, i.y2 += dy; }
  void operator()(PageOp&) const {}
  void operator()(EndOp&) const {}
};
}  // namespace

DrawOp ShiftedOp(DrawOp op, double dy) {
  std::visit(ShiftBy{dy}, op);
  return op;
}

std::vector<RollPiece> CutRoll(const DrawOps& ops, double line_per_point, double pen_y, double longest) {
  std::vector<Extent> extents;
  extents.reserve(ops.size());
  double bottom = pen_y;
  for (const DrawOp& op : ops) {
    extents.push_back(std::visit(ExtentOf{line_per_point}, op));
    bottom = std::max(bottom, extents.back().bottom);
  }
  if (bottom <= longest) return {RollPiece{ops, std::max(bottom, 1.0)}};

  // Ops in the order they stand on the roll; a piece starts at the top of the first op that
  // would reach past the end of the one before.
  std::vector<size_t> order(ops.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return extents[a].top < extents[b].top; });
  std::vector<RollPiece> pieces;
  if (order.empty()) return {RollPiece{{}, longest}};  // only the pen went past the end: a blank feed
  double start = 0, lowest = 0;
  for (size_t index : order) {
    const Extent& extent = extents[index];
    if (extent.bottom - extent.top > longest)
      Raise(err::kInvalidArgument, "a drawing " + std::to_string(std::lround((extent.bottom - extent.top) / 20)) +
                                       " points high does not fit on the longest roll page (32,767 points)");
    if (pieces.empty() || extent.bottom - start > longest) {
      if (!pieces.empty()) pieces.back().length = std::max(lowest - start, 1.0);
      start = pieces.empty() && extent.bottom <= longest ? 0 : extent.top;
      lowest = start;
      pieces.push_back(RollPiece{{}, 0});
    }
    pieces.back().ops.push_back(ShiftedOp(ops[index], -start));
    lowest = std::max(lowest, extent.bottom);
  }
  // The feed below the last line belongs to the last piece, as far as that piece may reach.
  pieces.back().length = std::clamp(std::max(lowest, pen_y) - start, 1.0, longest);
  return pieces;
}

}  // namespace quorvel
