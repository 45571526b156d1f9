// Fuzzes the text-fitting routines with any text, width, font size and weight.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/text_fitting.hpp"
#include "foundation/utf8.hpp"

namespace {

// The text without the characters in `drop`: what no fitting may lose or change.
std::string Without(const std::string& text, const char* drop) {
  std::string out;
  for (char c : text)
    if (!std::strchr(drop, c)) out += c;
  return out;
}

void Check(bool ok) {
  if (!ok) std::abort();  // a broken promise of the routine: libFuzzer keeps the input
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace quorvel;
  FuzzedDataProvider in(data, size);
  PreviewSurface obj;
  const double sizes[] = {1, 8, 8.25, 10, 20, 24, 72, 400};
  obj.Font().Size(sizes[in.ConsumeIntegralInRange<size_t>(0, 7)]);
  obj.Font().Bold(in.ConsumeBool());
  const int16_t width = in.ConsumeIntegral<int16_t>();
  const double split_width = in.ConsumeFloatingPoint<double>();
  const std::string text = in.ConsumeRemainingBytesAsString();

  std::string a = text;
  int16_t length = width;
  const std::string shortened = AdjustedText(obj, a, length);
  Check(length == width && a == shortened);
  Check(shortened == text || (shortened.size() >= 3 && shortened.compare(shortened.size() - 3, 3, "...") == 0));

  std::string b = text;
  length = width;
  const std::string broken = AdjustedText2(obj, b, length);
  Check(b == broken && Without(broken, "\r\n") == Without(text, "\r\n"));  // breaks added, nothing lost

  std::string c = text;
  int16_t wrap_width = width;
  std::vector<std::string> lines{"\x01 left over from the caller"};
  WrapText(obj, c, wrap_width, lines);
  std::string joined;
  for (const std::string& line : lines) joined += line;
  // Lines only lose the blanks they started with; the caller's old lines are gone.
  Check(!lines.empty() && Without(joined, " ") == Without(text, " "));

  std::vector<std::string> halves;
  try {
    SplitInTwo(obj, text, split_width, halves);
    Check(!halves.empty() && halves.size() <= 2);
    if (halves.size() == 2) Check(halves[0] + halves[1] == text);
  } catch (const AutomationError&) {
    Check(!IsValidUtf8(text));  // the one error it may pass on: a text that cannot be measured
  }
  return 0;
}
