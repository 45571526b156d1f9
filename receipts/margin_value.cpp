// Whole-text numeric conversion for margins handed straight to the surface.
#include "receipts/margin_value.hpp"

#include <charconv>
#include <cmath>
#include <string>

#include "foundation/errors.hpp"

namespace quorvel {

double SurfaceNumber(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  const size_t last = text.find_last_not_of(' ');
  std::string_view body = first == std::string_view::npos ? std::string_view() : text.substr(first, last - first + 1);
  bool signed_twice = false;
  if (!body.empty() && body.front() == '+') {
    body.remove_prefix(1);
    signed_twice = !body.empty() && body.front() == '-';
  }
  double value = 0;
  const auto [end, ec] = std::from_chars(body.data(), body.data() + body.size(), value);
  // from_chars also reads "inf" and "nan", which no surface takes as a position.
  if (body.empty() || signed_twice || ec != std::errc() || end != body.data() + body.size() || !std::isfinite(value))
    Raise(err::kTypeMismatch, "\"" + std::string(text) + "\" is not a number");
  return value;
}

}  // namespace quorvel
