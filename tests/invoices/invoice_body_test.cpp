// Item lines, the totals block, notes, amount in words and signatures of an invoice.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "foundation/company_info.hpp"
#include "invoices/invoice_printer.hpp"
#include "support/documents_helpers.hpp"

namespace quorvel {
namespace {

using testing::ExpectAt;
using testing::FindText;
using testing::Fitted;
using testing::HasText;
using testing::kFoot;
using testing::LineAt;
using testing::Measure;
using testing::Wrapped;

const double L = LineAt(10);

class InvoiceBody : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetProfileWithCompany(); }
  ClassInvoicePrinter printer;
  ClassInvoice invoice = testing::SampleInvoice();
};

TEST_F(InvoiceBody, ItemLineFitsItsFieldsToTheColumns) {
  PreviewSurface s(12240, 15840);  // Letter: the amount column ends at 12240 - 1000
  // Fields just wider than their lengths are cut to them, on the page only.
  const std::string wide = testing::JustWider(1470);
  ClassInvoiceItem it{.ItemName = testing::JustWider(1500),
                      .Quantity = testing::JustWider(1160),
                      .UnitPrice = wide,
                      .Total = wide,
                      .Description = "Galvanised steel conduit, twenty-five millimetre bore, three metre "
                                     "lengths with couplers"};
  s.CurrentY(5000);
  printer.PrintItem(s, it);

  const std::string name = Fitted(it.ItemName, 1500), quantity = Fitted(it.Quantity, 1160);
  const std::string amount = Fitted(wide, 1470);
  ASSERT_NE(amount, wide);
  EXPECT_EQ(it.Total, wide);
  const std::pair<std::string, double> cells[] = {  // fitted, then aligned
      {name, 1000}, {quantity, 7960 - Measure(quantity)}, {amount, 9430 - Measure(amount)},
      {amount, 12240 - 1000 - Measure(amount)}};
  const auto texts = testing::Texts(s.Ops());
  ASSERT_GE(texts.size(), 4u);
  for (size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(texts[k].text, cells[k].first);
    ExpectAt(texts[k], cells[k].second, 5000);
  }

  const std::vector<std::string> lines = Wrapped(it.Description, 4300);
  ASSERT_GE(lines.size(), 2u);
  for (size_t k = 0; k < lines.size(); ++k) {
    const TextOp line = FindText(s.Ops(), lines[k]);
    ExpectAt(line, 2500, 5000 + k * L);
    EXPECT_FALSE(line.bold);
  }
  EXPECT_NEAR(s.CurrentY(), 5000 + lines.size() * L, 1e-6);  // under the last description line

  // The expenses heading is the one bold description, and bold ends with it.
  PreviewSurface h;
  ClassInvoiceItem heading{.Description = "   ---Other Expenses---"};
  printer.PrintItem(h, heading);
  const auto only = testing::Texts(h.Ops());
  ASSERT_EQ(only.size(), 1u);  // its empty fields draw nothing
  EXPECT_TRUE(only[0].bold);
  ExpectAt(only[0], 2500, 0);
  EXPECT_FALSE(h.Font().Bold());
}

TEST_F(InvoiceBody, TotalsLabelsAndAmountsFromThePageFootDown) {
  PreviewSurface s;
  invoice.HasDiscount = true;
  invoice.DiscountTitle = "Discount 5%:";
  invoice.subTotal = "1,200.00";
  invoice.InvoiceDiscount = "60.00";
  invoice.TotalOtherExpenses = "45.00";
  invoice.Total = "1,185.00";
  invoice.AddExpense(testing::MakeItem("", "Freight", "45.00"));
  printer.PrintInvoice(s, invoice, false);

  const double label_x = 11906 - std::floor(11906.0 / 3), right = 11906 - 1000;
  ExpectAt(FindText(s.Ops(), " Subtotal:"), label_x, kFoot);
  ExpectAt(FindText(s.Ops(), "Discount 5%:"), label_x, kFoot + L);
  ExpectAt(FindText(s.Ops(), " Other Expenses:"), label_x, kFoot + 2 * L);
  const TextOp total_label = FindText(s.Ops(), " Total:");
  ExpectAt(total_label, label_x, kFoot + 3 * L);
  EXPECT_TRUE(total_label.bold);

  ExpectAt(FindText(s.Ops(), "1,200.00"), right - Measure("1,200.00"), kFoot);
  ExpectAt(FindText(s.Ops(), "60.00"), right - Measure("60.00"), kFoot + L);
  // "45.00" is also the expense line's amount: the totals one is the last drawn.
  ExpectAt(testing::AllTexts(s.Ops(), "45.00").back(), right - Measure("45.00"), kFoot + 2 * L);
  const TextOp total = FindText(s.Ops(), "1,185.00");
  ExpectAt(total, right - Measure("1,185.00", 10, true), kFoot + 3 * L);
  EXPECT_TRUE(total.bold);
}

TEST_F(InvoiceBody, WithoutDiscountOrExpensesTotalFollowsSubtotal) {
  testing::NoEndDocSurface s;  // a failing EndDoc is ignored
  invoice.InvoiceDiscount = "9.99";  // not printed: HasDiscount is off
  EXPECT_NO_THROW(printer.PrintInvoice(s, invoice, false));
  EXPECT_EQ(s.end_doc_calls, 1);
  for (const char* text : {"Discount:", "9.99", " Other Expenses:", "   ---Other Expenses---", "Item #"})
    EXPECT_FALSE(HasText(s.Ops(), text)) << text;  // no goods: no column captions either
  EXPECT_NEAR(FindText(s.Ops(), " Total:").y, kFoot + L, 1e-6);
  // But the head and the frame are there.
  EXPECT_TRUE(HasText(s.Ops(), " INV-7"));
  EXPECT_EQ(testing::Lines(s.Ops()).size(), 1u + 6 + 1 + 2 + 1 + 1);  // frame, block, PO, totals divider
}

TEST_F(InvoiceBody, NotesAmountInWordsAndSignaturesFollowTheTotals) {
  PreviewSurface s;  // two totals rows: subtotal and total
  invoice.CustomerNote2 = "NO Money Back";
  invoice.SumOfTotal =
      "One million two hundred thirty-four thousand five hundred sixty-seven dollars and eighty-nine "
      "cents, payable within thirty days of the date of this invoice";
  invoice.PrintFooter = true;
  invoice.CashierSign = "Autorization's Signature";
  printer.PrintInvoice(s, invoice, false);

  const double notes_y = kFoot + 2 * L + 2 * L;  // two totals rows, two blank lines
  ExpectAt(FindText(s.Ops(), "Notes:"), 1000, notes_y);
  ExpectAt(FindText(s.Ops(), "Thank You For Your Shopping"), 1000, notes_y + L);
  ExpectAt(FindText(s.Ops(), "NO Money Back"), 1000, notes_y + 2 * L);
  const double words_y = notes_y + 4 * L + L;  // three note lines, one blank line
  ExpectAt(FindText(s.Ops(), "Amount in Dollars:"), 1000, words_y);
  const std::vector<std::string> words = Wrapped(invoice.SumOfTotal, 11906 - 2000);
  ASSERT_EQ(words.size(), 2u);
  ExpectAt(FindText(s.Ops(), words[0]), 1000, words_y + L);
  ExpectAt(FindText(s.Ops(), words[1]), 1000, words_y + 2 * L);

  const double sign_y = words_y + 3 * L + 3 * L;  // three lines of room to sign in
  const double customer_length = Measure("Customer's Sign") + 1000;
  const double cashier_length = Measure("Autorization's Signature") + 1000;
  ExpectAt(FindText(s.Ops(), "Customer's Sign"), 1000 + 500, sign_y + 60);
  ExpectAt(FindText(s.Ops(), "Autorization's Signature"), 10906 - cashier_length + 500, sign_y + 60);
  const auto lines = testing::Lines(s.Ops());
  auto on_sign_y = [&](const LineOp& l) { return std::abs(l.y1 - sign_y) < 1e-6; };
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(), on_sign_y), 2);
  EXPECT_TRUE(testing::HasLine(s.Ops(), 1000, sign_y, 1000 + customer_length, sign_y));
  EXPECT_TRUE(testing::HasLine(s.Ops(), 10906 - cashier_length, sign_y, 10906, sign_y));
  EXPECT_EQ(testing::RulesCrossingTexts(s.Ops()), std::vector<std::string>{});
}

TEST_F(InvoiceBody, AmountCaptionFallsBackToTheSignThenToWords) {
  const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
      {"", "AED", "Thirty", "Amount in AEDs:"}, {"", "", "Thirty", "Amount in words:"}, {"", "", "", ""}};
  for (const auto& [name, sign, words, caption] : cases) {
    ModuleCompanyInfo::Profile().DefaultCurrencyName = name;
    ModuleCompanyInfo::Profile().DefaultCurrencySign = sign;
    invoice.SumOfTotal = words;
    PreviewSurface s;
    printer.PrintInvoice(s, invoice, false);
    for (const char* any : {"Amount in AEDs:", "Amount in words:"})
      EXPECT_EQ(HasText(s.Ops(), any), any == std::string(caption)) << any;  // none without words
    EXPECT_FALSE(HasText(s.Ops(), "Customer's Sign"));  // PrintFooter is off
  }
}

}  // namespace
}  // namespace quorvel
