// Text extents measured afresh and the crossing check between rules and texts.
#include "support/notes_receipts_helpers.hpp"

#include <algorithm>

#include "foundation/preview_surface.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {

double WidthOf(const TextOp& text) {
  PreviewSurface measure;
  measure.Font().Name(text.font);
  measure.Font().Size(text.size);
  measure.Font().Bold(text.bold);
  return measure.TextWidth(text.text);
}

double EndOf(const TextOp& text) { return text.x + WidthOf(text); }

std::vector<TextOp> AllTexts(const DrawOps& ops, const std::string& text) {
  std::vector<TextOp> found;
  for (const TextOp& t : Texts(ops))
    if (t.text == text) found.push_back(t);
  return found;
}

namespace {
struct Segment { double x1, y1, x2, y2; };

std::vector<Segment> Segments(const DrawOps& ops) {
  std::vector<Segment> segments;
  for (const LineOp& l : Lines(ops)) segments.push_back({l.x1, l.y1, l.x2, l.y2});
  for (const BoxOp& b : Boxes(ops)) {
    segments.push_back({b.x1, b.y1, b.x2, b.y1});
    segments.push_back({b.x1, b.y2, b.x2, b.y2});
    segments.push_back({b.x1, b.y1, b.x1, b.y2});
    segments.push_back({b.x2, b.y1, b.x2, b.y2});
  }
  return segments;
}

// Only horizontal and vertical rules are drawn; a rule on the edge of a text's box touches it
// without crossing.
bool Crosses(const Segment& s, double left, double top, double right, double bottom) {
  if (s.y1 == s.y2)
    return s.y1 > top && s.y1 < bottom && std::max(s.x1, s.x2) > left && std::min(s.x1, s.x2) < right;
  if (s.x1 == s.x2)
    return s.x1 > left && s.x1 < right && std::max(s.y1, s.y2) > top && std::min(s.y1, s.y2) < bottom;
  return true;  // a slanted rule is never expected
}
}  // namespace

std::vector<std::string> RulesCrossingTexts(const DrawOps& ops) {
  std::vector<std::string> found;
  for (const TextOp& t : Texts(ops)) {
    const double right = EndOf(t), bottom = t.y + LineAt(t.size);
    for (const Segment& s : Segments(ops))
      if (Crosses(s, t.x, t.y, right, bottom))
        found.push_back("\"" + t.text + "\" at (" + std::to_string(t.x) + ", " + std::to_string(t.y) +
                        ") crossed by (" + std::to_string(s.x1) + ", " + std::to_string(s.y1) + ")-(" +
                        std::to_string(s.x2) + ", " + std::to_string(s.y2) + ")");
  }
  return found;
}

std::string PdfInfoField(const std::string& info, const std::string& name) {
  const std::string key = "\n" + name + ":";
  const size_t at = ("\n" + info).find(key);
  if (at == std::string::npos) return {};
  const size_t start = info.find_first_not_of(' ', at + key.size() - 1);
  const size_t end = info.find('\n', start);
  return info.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

}  // namespace quorvel::testing
