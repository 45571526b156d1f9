// Base64 (RFC 4648, with padding): how binary payloads such as tax QR records travel as text.
#pragma once

#include <string>
#include <string_view>

namespace quorvel {

std::string Base64Encode(std::string_view bytes);

}  // namespace quorvel
