// The Saudi (ZATCA) phase-1 QR record: seller, VAT number, time, total and VAT as TLV in Base64.
#pragma once

#include <string>

namespace quorvel {

// Tags 1 to 5 in order, each a one-byte tag, a one-byte length in UTF-8 bytes and the bytes.
// A value longer than 255 bytes, or not UTF-8, raises the invalid-argument error naming it.
std::string ZatcaQrPayload(const std::string& SellerName, const std::string& VATNumber,
                           const std::string& Timestamp, const std::string& TotalWithVAT,
                           const std::string& VATTotal);

}  // namespace quorvel
