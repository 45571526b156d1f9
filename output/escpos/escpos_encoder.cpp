// Byte layout of the ESC/POS commands the receipt device sends.
#include "output/escpos/escpos_encoder.hpp"

#include <algorithm>

namespace quorvel::escpos {

namespace {
constexpr char kEsc = 0x1b, kGs = 0x1d;

void Append(std::string& job, std::initializer_list<int> bytes) {
  for (int byte : bytes) job.push_back(static_cast<char>(byte));
}
}  // namespace

void AppendInitialise(std::string& job) { Append(job, {kEsc, '@'}); }

void AppendRaster(std::string& job, const Raster& raster) {
  const int row_bytes = raster.BytesPerRow();
  for (int top = 0; top < raster.height; top += kBandRows) {
    const int rows = std::min(kBandRows, raster.height - top);
    // m = 0: normal density; then width in bytes and height in rows, low byte first.
    Append(job, {kGs, 'v', '0', 0, row_bytes & 0xff, row_bytes >> 8, rows & 0xff, rows >> 8});
    const auto* first = reinterpret_cast<const char*>(raster.bits.data()) + static_cast<size_t>(top) * row_bytes;
    job.append(first, static_cast<size_t>(rows) * row_bytes);
  }
}

void AppendDrawerPulse(std::string& job) { Append(job, {kEsc, 'p', 0, 25, 250}); }

void AppendFeedAndCut(std::string& job, bool cut) {
  Append(job, {kEsc, 'd', kFeedLines});
  if (cut) Append(job, {kGs, 'V', 1});
}

}  // namespace quorvel::escpos
