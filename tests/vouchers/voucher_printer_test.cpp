// The voucher page drawn on a preview, every position worked out from the layout rules; the
// amount in words; the demonstration's voucher printed to a PDF.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "automation/document_job.hpp"
#include "foundation/company_info.hpp"
#include "foundation/printer_surface.hpp"
#include "support/documents_helpers.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {
namespace {

using testing::ExpectAt;
using testing::FindText;
using testing::HasText;
using testing::LineAt;
using testing::Measure;

const double L = LineAt(10);
constexpr double kPageWidth = 11906;  // the preview's default A4 width
const std::string kRule = "........................................";

// Signature captions sit one line under their dotted rules, each rule 1000 after the last.
void ExpectSignatures(const DrawOps& ops, double y) {
  const double rule = Measure(kRule);
  const std::vector<TextOp> rules = testing::AllTexts(ops, kRule);
  ASSERT_EQ(rules.size(), 3u);
  const char* captions[] = {"Manager", "Accountant", "Receiver's Sign"};
  for (int k = 0; k < 3; ++k) {
    const double start = 1000 + k * (rule + 1000);
    ExpectAt(rules[k], start, y);
    ExpectAt(FindText(ops, captions[k]), start + rule / 2 - Measure(captions[k]) / 2, y + L);
  }
}

class VoucherPrinterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::ResetProfileWithCompany();
    testing::FillChequeVoucher(v);
  }
  ClassVoucher v;
  ClassVoucherPrinter printer;
  PreviewSurface page;
};

TEST_F(VoucherPrinterTest, PaymentVoucherOnPlainStationery) {
  printer.PrintDetails = true;
  printer.PrintReceiptVoucher(page, v, false, false);
  const DrawOps& ops = page.Ops();

  // Twelve empty 10 pt lines, then the 16 pt title centred on the page.
  const TextOp title = FindText(ops, "PAYMENT VOUCHER");
  ExpectAt(title, kPageWidth / 2 - Measure("PAYMENT VOUCHER", 16) / 2, 12 * L);
  EXPECT_EQ(title.size, 16);

  // The right-hand block at 11906 − 1000 − 1920, from the line under the title.
  const double y0 = 12 * L + LineAt(16);
  ExpectAt(FindText(ops, "Date: 14/03/2024"), 8986, y0);
  ExpectAt(FindText(ops, "NO.  PV-0317"), 8986, y0 + 2 * L);
  const double y1 = y0 + 4 * L;
  ExpectAt(FindText(ops, "Amount $"), 8986, y1);
  const auto boxes = testing::Boxes(ops);
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0], (BoxOp{8986 + Measure("Amount $"), y1, 10906, y1 + 350}));  // from where the label ended
  // Bold, right-aligned on the box's right edge, half a label line below the box top: its
  // line (230 high) lies inside the 350 box.
  const TextOp amount = FindText(ops, " 12,450.75");
  EXPECT_TRUE(amount.bold);
  ExpectAt(amount, 10906 - Measure(" 12,450.75", 10, true), y1 + L / 2);
  EXPECT_LE(amount.y + L, boxes[0].y2);

  // Payee in bold straight after its label, which is measured in bold.
  const double payee_y = y1 + L / 2 + 2 * L;
  EXPECT_FALSE(FindText(ops, "Pay To : ").bold);
  ExpectAt(FindText(ops, "Pay To : "), 1000, payee_y);
  EXPECT_TRUE(FindText(ops, "Corvantis Paper Mills").bold);
  ExpectAt(FindText(ops, "Corvantis Paper Mills"), 1000 + Measure("Pay To : ", 10, true), payee_y);

  // The currency name then the words on the same line.
  const double words_y = payee_y + 2 * L;
  ExpectAt(FindText(ops, "Dollars   "), 1000, words_y);
  ExpectAt(FindText(ops, v.SumofAmount), 1000 + Measure("Dollars   "), words_y);

  const double by_y = words_y + 2 * L;
  ExpectAt(FindText(ops, "BY   CHEQUE  NO.   004518"), 1000, by_y);
  ExpectAt(FindText(ops, "Bank :  Fernhollow Savings Bank"), 1000, by_y + 2 * L);
  ExpectAt(FindText(ops, "Cheque Date:  30/03/2024"), 11906 - 1000 - 3000, by_y + 2 * L);
  const double note_y = by_y + 4 * L;
  ExpectAt(FindText(ops, "Note:  Paper supply, February"), 1000, note_y);

  // The table: the note's line, its empty line and the table's own, then the heading row at
  // the whole twip.
  const double row = std::nearbyint(note_y + 3 * L);
  // Columns 1–2: centre − whole width / 2, rounded: "Bill#" 3870 font units = 377.93 twips →
  // 1700 − 377 / 2 = 1511.5 → 1512; "Date" 4326 = 422.46 → 3150 − 211 = 2939.
  // Columns 3–6: centre − whole half width: "Org.Amount" 1078.22 → 4700 − 539 = 4161;
  // "AmountDue" 1056.15 → 6300 − 528 = 5772; "Credits" 633.50 → 7835 − 316 = 7519 (the rule of
  // the first two columns would give 7518); "Payment" 789.26 → 9435 − 394 = 9041.
  const std::pair<const char*, double> headings[] = {{"Bill#", 1512},     {"Date", 2939},    {"Org.Amount", 4161},
                                                     {"AmountDue", 5772}, {"Credits", 7519}, {"Payment", 9041}};
  for (const auto& [heading, x] : headings) ExpectAt(FindText(ops, heading), x, row);

  // The rows under the heading rule (their columns and the frame are the table tests'), the
  // bottom rule under the second.
  const double top = row + L;
  ExpectAt(FindText(ops, " B-1001"), 1000, top);
  ExpectAt(FindText(ops, "7,250.75 "), 10906 - Measure("7,250.75 "), top + L);
  EXPECT_EQ(testing::Lines(ops).back(), (LineOp{1000, top + 2 * L, 10906, top + 2 * L}));

  // One line below the rounded bottom rule, then two empty lines.
  ExpectSignatures(ops, std::nearbyint(top + 2 * L) + 3 * L);
}

TEST_F(VoucherPrinterTest, ReceiptVoucherUnderTheLetterhead) {
  v.PaymentMethod = "Cash";
  v.ChequeNumber = "";
  printer.PrintDetails = true;
  printer.PrintReceiptVoucher(page, v, true, true);
  const DrawOps& ops = page.Ops();

  EXPECT_EQ(FindText(ops, "Larkspur Office Supply").size, 20);
  const double rule_y = testing::Lines(ops).at(0).y1;  // the letterhead's rule
  ExpectAt(FindText(ops, "RECEIPT VOUCHER"), kPageWidth / 2 - Measure("RECEIPT VOUCHER", 16) / 2, rule_y + L);

  const double payee_y = rule_y + L + LineAt(16) + 4 * L + L / 2 + 2 * L;
  ExpectAt(FindText(ops, "Received From : "), 1000, payee_y);
  ExpectAt(FindText(ops, "Corvantis Paper Mills"), 1000 + Measure("Received From : ", 10, true), payee_y);

  // Cash: the same pattern with an empty number, and no bank line.
  const double by_y = payee_y + 4 * L;
  ExpectAt(FindText(ops, "BY   Cash  NO.   "), 1000, by_y);
  EXPECT_FALSE(HasText(ops, "Bank :  Fernhollow Savings Bank"));
  const double note_y = by_y + 2 * L;
  ExpectAt(FindText(ops, "Note:  Paper supply, February"), 1000, note_y);
  // "Invoice#" 7628 font units = 744.92 twips → 1700 − 744 / 2 = 1328.
  ExpectAt(FindText(ops, "Invoice#"), 1328, std::nearbyint(note_y + 3 * L));
  EXPECT_FALSE(HasText(ops, "Bill#"));
}

TEST_F(VoucherPrinterTest, TitleAndChequeTestFollowTheSwitches) {
  printer.Title = "CASH RECEIPT";
  for (bool receipt : {false, true}) {
    PreviewSurface s;
    printer.PrintReceiptVoucher(s, v, false, receipt);
    ExpectAt(FindText(s.Ops(), "CASH RECEIPT"), kPageWidth / 2 - Measure("CASH RECEIPT", 16) / 2, 12 * L);
    EXPECT_FALSE(HasText(s.Ops(), "PAYMENT VOUCHER") || HasText(s.Ops(), "RECEIPT VOUCHER"));
  }
  // Any case of "cheque" prints the bank line; only the exact method text shows on the BY line.
  for (const std::string method : {"Cheque", "cheque", "CHEQUE", "Cheques", "Cash"}) {
    PreviewSurface s;
    v.PaymentMethod = method;
    printer.PrintReceiptVoucher(s, v, false, false);
    EXPECT_TRUE(HasText(s.Ops(), "BY   " + method + "  NO.   004518")) << method;
    const bool cheque = method == "Cheque" || method == "cheque" || method == "CHEQUE";
    EXPECT_EQ(HasText(s.Ops(), "Bank :  Fernhollow Savings Bank"), cheque) << method;
    EXPECT_EQ(HasText(s.Ops(), "Cheque Date:  30/03/2024"), cheque) << method;
  }
}

TEST_F(VoucherPrinterTest, PlainStationeryKeepsTwelveLinesBelowTheTopMargin) {
  ClassCompanyInfo().SetTopMargin(500);
  ClassVoucher empty;
  page.Font().Size(12);  // the blank lines are in the font the surface brings
  printer.PrintReceiptVoucher(page, empty, false, false);
  const auto texts = testing::Texts(page.Ops());
  ASSERT_FALSE(texts.empty());
  EXPECT_EQ(texts[0].text, "PAYMENT VOUCHER");  // nothing drawn above it
  EXPECT_NEAR(texts[0].y, 500 + 12 * LineAt(12), 1e-6);
  EXPECT_TRUE(testing::Lines(page.Ops()).empty());
}

TEST_F(VoucherPrinterTest, DetailsWithoutPaymentsOrSwitchedOffPrintNoTable) {
  printer.PrintReceiptVoucher(page, v, false, false);  // PrintDetails is off by default
  EXPECT_FALSE(HasText(page.Ops(), "Bill#") || HasText(page.Ops(), " B-1001"));

  v.Payments()->Remove(1);
  v.Payments()->Remove(1);
  printer.PrintDetails = true;
  PreviewSurface s;
  printer.PrintReceiptVoucher(s, v, false, false);
  EXPECT_FALSE(HasText(s.Ops(), "Bill#"));
  EXPECT_TRUE(testing::Lines(s.Ops()).empty());
  // Signatures come after the note's line, its empty line and two more.
  ExpectSignatures(s.Ops(), FindText(s.Ops(), "Note:  Paper supply, February").y + 4 * L);
}

// The texts printed on the words' lines: everything between the currency word and the BY line,
// checked for their x and their rhythm of one line each.
std::vector<std::string> WordLines(const DrawOps& ops, const std::string& currency) {
  const TextOp start = FindText(ops, currency);
  std::vector<std::string> out;
  bool inside = false;
  for (const TextOp& t : testing::Texts(ops)) {
    if (t.text.rfind("BY   ", 0) == 0) {
      EXPECT_NEAR(t.y, start.y + (out.size() + 1) * L, 1e-6);  // one empty line after the words
      break;
    }
    if (inside) {
      EXPECT_EQ(t.x, 1000 + Measure(currency)) << t.text;
      EXPECT_NEAR(t.y, start.y + out.size() * L, 1e-6) << t.text;
      out.push_back(t.text);
    }
    inside = inside || t.text == currency;
  }
  return out;
}

TEST_F(VoucherPrinterTest, AmountInWordsBreaksPastTheWidthOnceAndOnlyForItsOwnVoucher) {
  constexpr double kWordsWidth = 11906 - 1000 - 1000 - 1500;  // 8406
  // The first line is the shortest head that ends with a blank and is at least 8406 wide. Here
  // the heads grow by "i " words, 100 wide each, so a width 100 off splits elsewhere.
  std::string head;
  while (Measure(head + "Seventy Thousand ") < kWordsWidth) head += "Seventy Thousand ";
  while (Measure(head) < kWordsWidth) head += "i ";
  v.SumofAmount = head + "Five Only";
  printer.PrintReceiptVoucher(page, v, false, false);
  EXPECT_EQ(WordLines(page.Ops(), "Dollars   "), (std::vector<std::string>{head, "Five Only"}));

  // The same printer on the next voucher shows only that voucher's words.
  v.SumofAmount = "Five Only";
  PreviewSurface second;
  printer.PrintReceiptVoucher(second, v, false, false);
  EXPECT_EQ(WordLines(second.Ops(), "Dollars   "), std::vector<std::string>{"Five Only"});

  // Without a currency name the sign stands in.
  ModuleCompanyInfo::Profile().DefaultCurrencyName = "";
  PreviewSurface by_sign;
  printer.PrintReceiptVoucher(by_sign, v, false, false);
  EXPECT_EQ(WordLines(by_sign.Ops(), "$"), std::vector<std::string>{"Five Only"});
}

TEST(VoucherSample, PrintsOnePagePdfWithItsTexts) {
  const std::string path = std::string(QUORVEL_SOURCE_DIR) + "/demo/samples/voucher.json";
  const DocumentJob job = LoadDocumentJobFile(path);  // fails on any name the classes lack
  const std::string pdf = testing::TempDir("voucher-pdf") + "/voucher.pdf";
  SystemPrinter().SetPaper(Paper::A4());
  SystemPrinter().SetOutput(PrinterOutput::ForPath(pdf));
  PrintJobOnSystemPrinter(job);
  EXPECT_EQ(SystemPrinter().LastPageCount(), 1);
  EXPECT_EQ(testing::PdfInfoField(testing::RunCommand("pdfinfo '" + pdf + "'"), "Pages"), "1");

  std::ifstream in(path);
  const nlohmann::json doc = nlohmann::json::parse(in).at("document");
  const std::string out = testing::RunCommand("pdftotext -layout '" + pdf + "' -");
  for (const std::string& expected : {std::string("PAYMENT VOUCHER"), std::string("Bill#"),
                                      doc.at("PayeeName").get<std::string>(), doc.at("Amount").get<std::string>(),
                                      ModuleCompanyInfo::Profile().CompanyName})
    EXPECT_NE(out.find(expected), std::string::npos) << expected << "\n" << out;
  // Each table row reads as one line: number (its head: long ones are shortened), date, paid.
  for (const nlohmann::json& p : doc.at("Payments")) {
    bool found = false;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);)
      found = found || (line.find(p.at("InvoiceDate").get<std::string>()) != std::string::npos &&
                        line.find(p.at("Payments").get<std::string>()) != std::string::npos &&
                        line.find(p.at("Number").get<std::string>().substr(0, 8)) != std::string::npos);
    EXPECT_TRUE(found) << p << "\n" << out;
  }
}

}  // namespace
}  // namespace quorvel
