// Receipt clock and the date-and-time text.
#include "receipts/receipt_clock.hpp"

namespace quorvel {

namespace {
std::function<std::time_t()>& Clock() {
  static std::function<std::time_t()> clock;
  return clock;
}
}  // namespace

void SetReceiptClock(std::function<std::time_t()> clock) { Clock() = std::move(clock); }

std::time_t ReceiptNow() { return Clock() ? Clock()() : std::time(nullptr); }

std::string ReceiptDateTimeText(std::time_t when) {
  std::tm local{};
  if (!localtime_r(&when, &local)) return {};
  char buffer[128];
  const size_t n = std::strftime(buffer, sizeof buffer, "%x %X", &local);
  return std::string(buffer, n);
}

}  // namespace quorvel
