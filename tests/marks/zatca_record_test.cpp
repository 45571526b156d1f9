// The ZATCA phase-1 record: the published vector, byte-counted lengths and the 255-byte limit,
// checked against the coreutils base64 encoder.
#include <gtest/gtest.h>

#include <fstream>

#include "invoices/invoice.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

// Base64 of raw bytes by the system's own encoder, so the expectation is built independently.
std::string SystemBase64(const std::string& bytes) {
  const std::string path = TempDir("zatca") + "/record.bin";
  std::ofstream(path, std::ios::binary) << bytes;
  std::string out = RunCommand("base64 -w0 " + path);
  return out;
}

std::string Field(char tag, const std::string& value) {
  return std::string(1, tag) + static_cast<char>(value.size()) + value;
}

TEST(ZatcaRecord, PublishedVectorAndLengthsCountingUtf8BytesNotCharacters) {
  ClassInvoice invoice;
  invoice.SetZatcaQR("Salla", "1234567891", "2021-07-12T14:25:09Z", "100.00", "15.00");
  EXPECT_EQ(invoice.QRCode,
            "AQVTYWxsYQIKMTIzNDU2Nzg5MQMUMjAyMS0wNy0xMlQxNDoyNTowOVoEBjEwMC4wMAUFMTUuMDA=");

  const std::string seller = "شركة النور";  // 10 characters, 19 bytes of UTF-8
  ASSERT_EQ(seller.size(), 19u);
  invoice.SetZatcaQR(seller, "300000000000003", "2026-11-22T10:00:00Z", "1150.00", "150.00");
  const std::string expected = Field(1, seller) + Field(2, "300000000000003") +
                               Field(3, "2026-11-22T10:00:00Z") + Field(4, "1150.00") +
                               Field(5, "150.00");
  EXPECT_EQ(invoice.QRCode, SystemBase64(expected));
}

TEST(ZatcaRecord, A255ByteValueFitsAndA256ByteValueIsRefusedByName) {
  ClassInvoice invoice;
  const std::string longest(255, 'A');
  invoice.SetZatcaQR(longest, "1", "2", "3", "4");
  EXPECT_EQ(invoice.QRCode, SystemBase64(Field(1, longest) + Field(2, "1") + Field(3, "2") +
                                         Field(4, "3") + Field(5, "4")));

  invoice.QRCode = "unchanged";
  std::string context;
  EXPECT_EQ(ErrorNumberOf([&] { invoice.SetZatcaQR("S", "1", "2", "3", std::string(256, '9')); }, &context), 5);
  EXPECT_NE(context.find("VATTotal"), std::string::npos) << context;
  // 128 two-byte letters are 256 bytes though only 128 characters.
  std::string arabic;
  for (int i = 0; i < 128; ++i) arabic += "ب";
  EXPECT_EQ(ErrorNumberOf([&] { invoice.SetZatcaQR(arabic, "1", "2", "3", "4"); }, &context), 5);
  EXPECT_NE(context.find("SellerName"), std::string::npos) << context;
  EXPECT_EQ(invoice.QRCode, "unchanged");
}

}  // namespace
}  // namespace quorvel::testing
