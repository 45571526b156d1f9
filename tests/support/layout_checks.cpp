// Rules crossing texts, measured with the real fonts.
#include "support/layout_checks.hpp"

#include <cmath>
#include <sstream>

#include "foundation/preview_surface.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {

namespace {
struct Rect {
  double x1, y1, x2, y2;
};

// A straight rule (horizontal or vertical) runs through the inside of `r`.
bool Through(double x1, double y1, double x2, double y2, const Rect& r) {
  // A rule along a text's edge, or within a twip of it (the caption row starts at the whole-number
  // y under a table top that may not be whole), does not cross it.
  constexpr double kTouch = 1;
  if (std::abs(y1 - y2) < kTouch)
    return y1 > r.y1 + kTouch && y1 < r.y2 - kTouch && std::max(x1, x2) > r.x1 + kTouch && std::min(x1, x2) < r.x2 - kTouch;
  return x1 > r.x1 + kTouch && x1 < r.x2 - kTouch && std::max(y1, y2) > r.y1 + kTouch && std::min(y1, y2) < r.y2 - kTouch;
}
}  // namespace

std::vector<std::string> RulesCrossingTexts(const DrawOps& ops) {
  PreviewSurface measure;
  std::vector<std::pair<Rect, std::string>> texts;
  for (const TextOp& t : Texts(ops)) {
    measure.Font().Size(t.size);
    measure.Font().Bold(t.bold);
    texts.push_back({{t.x, t.y, t.x + measure.TextWidth(t.text), t.y + LineAt(t.size)}, t.text});
  }
  std::vector<std::string> found;
  auto check = [&](double x1, double y1, double x2, double y2) {
    for (const auto& [rect, text] : texts)
      if (Through(x1, y1, x2, y2, rect)) {
        std::ostringstream out;
        out << "rule (" << x1 << "," << y1 << ")-(" << x2 << "," << y2 << ") crosses \"" << text << "\"";
        found.push_back(out.str());
      }
  };
  for (const LineOp& l : Lines(ops)) check(l.x1, l.y1, l.x2, l.y2);
  for (const BoxOp& b : Boxes(ops)) {
    check(b.x1, b.y1, b.x2, b.y1);
    check(b.x1, b.y2, b.x2, b.y2);
    check(b.x1, b.y1, b.x1, b.y2);
    check(b.x2, b.y1, b.x2, b.y2);
  }
  return found;
}

}  // namespace quorvel::testing
