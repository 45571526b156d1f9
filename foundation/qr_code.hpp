// QR symbols for printed documents: the module grid of a payload, error correction level M.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace quorvel {

// A square grid of modules, without its quiet zone.
struct QrMatrix {
  int size = 0;
  std::vector<uint8_t> dark;  // size × size, row by row, 1 = dark module
  bool Dark(int column, int row) const { return dark[static_cast<size_t>(row) * size + column] != 0; }
};

// Modules of white border every reader expects around the symbol.
constexpr int kQrQuietZone = 4;

// Encodes the bytes as they are (8-bit mode, level M). A payload too long for any QR version
// raises the invalid-argument error.
QrMatrix EncodeQr(std::string_view data);

// Modules across the whole drawn square, quiet zone included.
int QrSideModules(std::string_view data);

}  // namespace quorvel
