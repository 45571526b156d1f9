// 16-bit conversions, numeric prefixes and number texts.
#include "foundation/runtime.hpp"

#include <charconv>
#include <cmath>
#include <limits>

#include "foundation/errors.hpp"

namespace quorvel {

namespace {
double RoundHalfEven(double value) {
  const double floor = std::floor(value);
  const double diff = value - floor;
  if (diff > 0.5) return floor + 1;
  if (diff < 0.5) return floor;
  return std::fmod(floor, 2.0) == 0 ? floor : floor + 1;
}

[[noreturn]] void RaiseOverflow(double value, std::string_view what) {
  std::string context = what.empty() ? std::string() : std::string(what) + " = ";
  context += NumberText(value) + " does not fit";
  Raise(err::kOverflow, context);
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
}  // namespace

int16_t ToInt16(double value, std::string_view what) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= -32768.0 && rounded <= 32767.0)) RaiseOverflow(value, what);
  return static_cast<int16_t>(rounded);
}

int32_t ToInt32(double value, std::string_view what) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) RaiseOverflow(value, what);
  return static_cast<int32_t>(rounded);
}

int16_t AddInt16(int16_t a, int16_t b, std::string_view what) {
  const int sum = int{a} + int{b};
  if (sum < -32768 || sum > 32767) RaiseOverflow(sum, what);
  return static_cast<int16_t>(sum);
}

double Num(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  const size_t start = i;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  size_t digits = 0;
  while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  }
  if (digits == 0) return 0;
  // An exponent belongs to the number only when digits follow it.
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
    if (j < text.size() && IsDigit(text[j])) {
      while (j < text.size() && IsDigit(text[j])) ++j;
      i = j;
    }
  }
  std::string prefix(text.substr(start, i - start));
  if (prefix[0] == '+') prefix.erase(0, 1);
  if (!prefix.empty() && prefix.back() == '.') prefix.pop_back();
  double value = 0;
  std::from_chars(prefix.data(), prefix.data() + prefix.size(), value);
  return std::isfinite(value) ? value : 0;
}

double Int(double x) { return std::floor(x); }

std::string SignedText(long long n) { return n < 0 ? std::to_string(n) : " " + std::to_string(n); }

std::string NumberText(double value) {
  char buffer[64];
  auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

}  // namespace quorvel
