// Building the ZATCA phase-1 TLV record.
#include "invoices/zatca_qr.hpp"

#include "foundation/base64.hpp"
#include "foundation/errors.hpp"
#include "foundation/utf8.hpp"
#include "invoices/invoice.hpp"

namespace quorvel {

namespace {
void AppendField(std::string& record, char tag, const std::string& value, const char* name) {
  RequireUtf8(value, name);
  if (value.size() > 255)
    Raise(err::kInvalidArgument, std::string(name) + ": " + std::to_string(value.size()) +
                                     " bytes of UTF-8, at most 255 fit a QR record field");
  record += tag;
  record += static_cast<char>(value.size());
  record += value;
}
}  // namespace

std::string ZatcaQrPayload(const std::string& SellerName, const std::string& VATNumber,
                           const std::string& Timestamp, const std::string& TotalWithVAT,
                           const std::string& VATTotal) {
  std::string record;
  AppendField(record, 1, SellerName, "SellerName");
  AppendField(record, 2, VATNumber, "VATNumber");
  AppendField(record, 3, Timestamp, "Timestamp");
  AppendField(record, 4, TotalWithVAT, "TotalWithVAT");
  AppendField(record, 5, VATTotal, "VATTotal");
  return Base64Encode(record);
}

void ClassInvoice::SetZatcaQR(std::string SellerName, std::string VATNumber, std::string Timestamp,
                              std::string TotalWithVAT, std::string VATTotal) {
  QRCode = ZatcaQrPayload(SellerName, VATNumber, Timestamp, TotalWithVAT, VATTotal);
}

}  // namespace quorvel
