// QR encoding through libqrencode.
#include "foundation/qr_code.hpp"

#include <qrencode.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "foundation/errors.hpp"

namespace quorvel {

QrMatrix EncodeQr(std::string_view data) {
  if (data.empty()) Raise(err::kInvalidArgument, "QR code: the payload is empty");
  // encodeData takes a length, so NULs and any other byte pass through unchanged.
  QRcode* code = QRcode_encodeData(static_cast<int>(data.size()),
                                   reinterpret_cast<const unsigned char*>(data.data()), 0, QR_ECLEVEL_M);
  if (!code)
    Raise(err::kInvalidArgument, "QR code: " + std::to_string(data.size()) + " bytes cannot be encoded (" +
                                     std::strerror(errno) + ")");
  QrMatrix matrix;
  matrix.size = code->width;
  matrix.dark.resize(static_cast<size_t>(code->width) * code->width);
  for (size_t i = 0; i < matrix.dark.size(); ++i) matrix.dark[i] = code->data[i] & 1;
  QRcode_free(code);
  return matrix;
}

int QrSideModules(std::string_view data) { return EncodeQr(data).size + 2 * kQrQuietZone; }

}  // namespace quorvel
