// The C interface and the type library tell a host about characters no installed font has, and
// strict mode turns them into an error with nothing written.
#include <gtest/gtest.h>

#include <filesystem>

#include "foundation/company_info.hpp"
#include "support/capi_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

// A voucher with the letterhead, its company name holding U+1FAE8, which no installed font has.
void PrintVoucherOfCompany(const std::string& pdf, const char* name) {
  ASSERT_EQ(quorvel_printer_set_output(pdf.c_str(), "a4"), QUORVEL_OK) << LastError();
  std::vector<quorvel_variant> company = {CText(name)};
  for (int i = 1; i < 12; ++i) company.push_back(CText(""));
  Call(Create("Quorvel.ClassCompanyInfo"), "SetCompanyInfo", company);
  CObject voucher = Create("Quorvel.ClassVoucher");
  std::vector<quorvel_variant> args = {CObj(voucher), CBool(true), CBool(false)};
  quorvel_call(Create("Quorvel.ClassVoucherPrinter").get(), "PrintIt", args.data(), 3, nullptr);
}

std::string LastWarnings(int32_t* count) {
  char* text = nullptr;
  EXPECT_EQ(quorvel_printer_last_warnings(&text, count), QUORVEL_OK) << LastError();
  std::string warnings = text ? text : "";
  quorvel_text_free(text);
  return warnings;
}

TEST(CTextWarnings, LastDocumentsWarningsAndStrictMode) {
  const std::string dir = TempDir("c-text-warnings");
  PrintVoucherOfCompany(dir + "/warned.pdf", "Halvern \U0001FAE8 LLC");
  EXPECT_TRUE(std::filesystem::exists(dir + "/warned.pdf"));
  int32_t count = 0;
  EXPECT_EQ(LastWarnings(&count), "missing glyph U+1FAE8 in \"Halvern \U0001FAE8 LLC\"");
  EXPECT_EQ(count, 1);
  quorvel_object* printer = nullptr;
  ASSERT_EQ(quorvel_system_printer(&printer), QUORVEL_OK);
  CObject printer_object(printer);
  EXPECT_EQ(TakeText(Get(printer_object, "TextWarnings")), "missing glyph U+1FAE8 in \"Halvern \U0001FAE8 LLC\"");

  PrintVoucherOfCompany(dir + "/clean.pdf", "Halvern LLC");
  EXPECT_EQ(LastWarnings(&count), "");
  EXPECT_EQ(count, 0);

  ASSERT_EQ(quorvel_set_strict_text(1), QUORVEL_OK);
  PrintVoucherOfCompany(dir + "/strict.pdf", "Halvern \U0001FAE8 LLC");
  const int32_t error = LastErrorNumber();
  const std::string message = LastError();
  ASSERT_EQ(quorvel_set_strict_text(0), QUORVEL_OK);
  EXPECT_EQ(error, 5);
  EXPECT_NE(message.find("U+1FAE8"), std::string::npos) << message;
  EXPECT_FALSE(std::filesystem::exists(dir + "/strict.pdf"));
  ModuleCompanyInfo::Profile() = CompanyProfile{};
}

}  // namespace
}  // namespace quorvel::testing
