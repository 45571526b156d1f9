// Text extents measured afresh, and pdfinfo fields.
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

std::string PdfInfoField(const std::string& info, const std::string& name) {
  const std::string key = "\n" + name + ":";
  const size_t at = ("\n" + info).find(key);
  if (at == std::string::npos) return {};
  const size_t start = info.find_first_not_of(' ', at + key.size() - 1);
  const size_t end = info.find('\n', start);
  return info.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

}  // namespace quorvel::testing
