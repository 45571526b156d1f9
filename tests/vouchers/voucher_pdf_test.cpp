// The demonstration's payment voucher, read from its sample file and printed to a PDF.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>
#include <set>

#include <nlohmann/json.hpp>

#include "foundation/company_info.hpp"
#include "foundation/printer_surface.hpp"
#include "support/ops_helpers.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {
namespace {

using nlohmann::json;

json LoadSample() {
  std::ifstream in(std::string(QUORVEL_SOURCE_DIR) + "/demo/samples/voucher.json");
  EXPECT_TRUE(in.good());
  return json::parse(in);
}

std::set<std::string> Keys(const json& object) {
  std::set<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.insert(key);
  return keys;
}

TEST(VoucherSample, NamesAreTheClassesProperties) {
  const json sample = LoadSample();
  EXPECT_EQ(sample.at("type"), "voucher");
  EXPECT_EQ(Keys(sample), (std::set<std::string>{"type", "company", "printer", "isReceipt", "printHeader", "document"}));
  EXPECT_EQ(Keys(sample.at("company")),
            (std::set<std::string>{"CompanyName", "Address1", "Address2", "Address3", "City", "Country", "phone",
                                   "Email", "Fax", "Website", "DefaultCurrencySign", "DefaultCurrencyName"}));
  EXPECT_EQ(sample.at("printer"), json::parse(R"({"PrintDetails": true, "Title": ""})"));
  EXPECT_EQ(sample.at("isReceipt"), false);
  EXPECT_EQ(sample.at("printHeader"), true);
  const json& doc = sample.at("document");
  EXPECT_EQ(Keys(doc), (std::set<std::string>{"Amount", "SumofAmount", "Number", "ReceiptDate", "PayeeName",
                                              "ChequeNumber", "Bank", "ChequeDate", "PaymentMethod", "Notes",
                                              "Payments"}));
  EXPECT_EQ(doc.at("PaymentMethod"), "CHEQUE");
  ASSERT_GE(doc.at("Payments").size(), 2u);
  for (const json& p : doc.at("Payments"))
    EXPECT_EQ(Keys(p), (std::set<std::string>{"Number", "InvoiceDate", "OriginalAmount", "AmountDue", "Credits",
                                              "Payments"}));
}

// Fills a voucher from the sample; `at` fails the test on any name the classes do not have.
void FillFromSample(const json& doc, ClassVoucher& v) {
  for (auto [field, name] : {std::pair{&v.Amount, "Amount"}, {&v.SumofAmount, "SumofAmount"}, {&v.Number, "Number"},
                             {&v.ReceiptDate, "ReceiptDate"}, {&v.PayeeName, "PayeeName"},
                             {&v.ChequeNumber, "ChequeNumber"}, {&v.Bank, "Bank"}, {&v.ChequeDate, "ChequeDate"},
                             {&v.PaymentMethod, "PaymentMethod"}, {&v.Notes, "Notes"}})
    *field = doc.at(name).get<std::string>();
  for (const json& row : doc.at("Payments")) {
    auto p = std::make_shared<ClassPayment>();
    for (auto [field, name] : {std::pair{&p->Number, "Number"}, {&p->InvoiceDate, "InvoiceDate"},
                               {&p->OriginalAmount, "OriginalAmount"}, {&p->AmountDue, "AmountDue"},
                               {&p->Credits, "Credits"}, {&p->Payments, "Payments"}})
      *field = row.at(name).get<std::string>();
    v.AddPayment(p);
  }
}

TEST(VoucherSample, PrintsOnePagePdfWithItsTexts) {
  const json sample = LoadSample();
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  const json& c = sample.at("company");
  auto text = [&](const char* name) { return c.at(name).get<std::string>(); };
  ClassCompanyInfo().SetCompanyInfo(text("CompanyName"), text("Address1"), text("Address2"), text("Address3"),
                                    text("City"), text("Country"), text("phone"), text("Email"), text("Fax"),
                                    text("Website"), text("DefaultCurrencySign"), text("DefaultCurrencyName"));
  ClassVoucher voucher;
  FillFromSample(sample.at("document"), voucher);
  ClassVoucherPrinter printer;
  printer.PrintDetails = sample.at("printer").at("PrintDetails");
  printer.Title = sample.at("printer").at("Title");

  const std::string dir = testing::TempDir("voucher-pdf");
  const std::string pdf = dir + "/voucher.pdf";
  SystemPrinter().SetPaper(Paper::A4());
  SystemPrinter().SetOutput(PrinterOutput::ForPath(pdf));
  printer.PrintIt(voucher, sample.at("printHeader"), sample.at("isReceipt"));
  EXPECT_EQ(SystemPrinter().LastPageCount(), 1);

  EXPECT_TRUE(std::regex_search(testing::RunCommand("pdfinfo '" + pdf + "'"), std::regex("Pages:\\s+1\\n")));
  const std::string out = testing::RunCommand("pdftotext -layout '" + pdf + "' -");
  for (const std::string& expected : {std::string("PAYMENT VOUCHER"), voucher.PayeeName, voucher.Amount,
                                      text("CompanyName"), std::string("Bill#")})
    EXPECT_NE(out.find(expected), std::string::npos) << expected << "\n" << out;
  // Each table row reads as one line: number, date and the amount paid.
  for (const auto& p : *voucher.Payments()) {
    bool found = false;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);)
      found = found || (line.find(p->InvoiceDate) != std::string::npos && line.find(p->Payments) != std::string::npos &&
                        line.find(p->Number.substr(0, 8)) != std::string::npos);
    EXPECT_TRUE(found) << p->Number << "\n" << out;
  }
}

}  // namespace
}  // namespace quorvel
