// Item lines, the totals block, notes, amount in words and signatures of an invoice.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/text_fitting.hpp"
#include "invoices/invoice_printer.hpp"
#include "support/invoices_helpers.hpp"

namespace quorvel {
namespace {

using testing::FindText;
using testing::HasText;
using testing::kFoot;
using testing::LineAt;

const double L = LineAt(10);
constexpr double kNear = 1e-6;

void ExpectAt(const TextOp& t, double x, double y) {
  EXPECT_NEAR(t.x, x, kNear) << t.text;
  EXPECT_NEAR(t.y, y, kNear) << t.text;
}

std::vector<std::string> Wrapped(const std::string& text, int16_t width, bool bold = false) {
  PreviewSurface m;
  m.Font().Bold(bold);
  std::string copy = text;
  std::vector<std::string> lines;
  WrapText(m, copy, width, lines);
  return lines;
}

class InvoiceBody : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetCompany(); }
  ClassInvoicePrinter printer;
};

TEST_F(InvoiceBody, ItemLineFitsItsFieldsToTheColumns) {
  PreviewSurface s(12240, 15840);  // Letter: the amount column ends at 12240 - 1000
  ClassInvoiceItem it;
  it.ItemName = "CONDUIT-25MM-GALVANISED";
  it.Quantity = "1,000,000 cartons of twelve";  // wider than its column
  it.UnitPrice = "1,250.00";
  it.Total = "15,000.00";
  it.Description = "Galvanised steel conduit, twenty-five millimetre bore, three metre lengths with couplers";
  s.CurrentY(5000);
  printer.PrintItem(s, it);

  auto fitted = [&](const std::string& text, int16_t length) {
    std::string copy = text;
    AdjustedText(s, copy, length);
    return copy;
  };
  const std::string name = fitted(it.ItemName, 1500), quantity = fitted(it.Quantity, 1160);
  ASSERT_NE(name, it.ItemName);  // shortened on the page, not in the item
  ASSERT_NE(quantity, it.Quantity);
  ExpectAt(FindText(s.Ops(), name), 1000, 5000);
  ExpectAt(FindText(s.Ops(), quantity), 7960 - s.TextWidth(quantity), 5000);  // fitted, then aligned
  ExpectAt(FindText(s.Ops(), "1,250.00"), 9430 - s.TextWidth("1,250.00"), 5000);
  ExpectAt(FindText(s.Ops(), "15,000.00"), 12240 - 1000 - s.TextWidth("15,000.00"), 5000);

  const std::vector<std::string> lines = Wrapped(it.Description, 4300);
  ASSERT_GE(lines.size(), 2u);
  for (size_t k = 0; k < lines.size(); ++k) {
    const TextOp line = FindText(s.Ops(), lines[k]);
    ExpectAt(line, 2500, 5000 + k * L);
    EXPECT_FALSE(line.bold);
  }
  EXPECT_NEAR(s.CurrentY(), 5000 + lines.size() * L, kNear);  // under the last description line
}

TEST_F(InvoiceBody, ExpenseHeadingLineIsBoldAndBoldEndsWithIt) {
  PreviewSurface s;
  ClassInvoiceItem heading;
  heading.Description = "   ---Other Expenses---";
  printer.PrintItem(s, heading);
  const TextOp t = FindText(s.Ops(), "   ---Other Expenses---");
  EXPECT_TRUE(t.bold);
  ExpectAt(t, 2500, 0);
  EXPECT_FALSE(s.Font().Bold());
  EXPECT_EQ(testing::Texts(s.Ops()).size(), 1u);  // its empty fields draw nothing
}

TEST_F(InvoiceBody, TotalsLabelsAndAmountsFromThePageFootDown) {
  PreviewSurface s;
  ClassInvoice invoice = testing::SampleInvoice();
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

  ExpectAt(FindText(s.Ops(), "1,200.00"), right - s.TextWidth("1,200.00"), kFoot);
  ExpectAt(FindText(s.Ops(), "60.00"), right - s.TextWidth("60.00"), kFoot + L);
  // "45.00" is also the expense line's amount: the totals one is the last drawn.
  const auto texts = testing::Texts(s.Ops());
  const auto last_45 = std::find_if(texts.rbegin(), texts.rend(), [](const TextOp& t) { return t.text == "45.00"; });
  ExpectAt(*last_45, right - s.TextWidth("45.00"), kFoot + 2 * L);
  PreviewSurface bold;
  bold.Font().Bold(true);
  const TextOp total = FindText(s.Ops(), "1,185.00");
  ExpectAt(total, right - bold.TextWidth("1,185.00"), kFoot + 3 * L);
  EXPECT_TRUE(total.bold);
}

TEST_F(InvoiceBody, WithoutDiscountOrExpensesTotalFollowsSubtotal) {
  PreviewSurface s;
  ClassInvoice invoice = testing::SampleInvoice();
  invoice.InvoiceDiscount = "9.99";  // not printed: HasDiscount is off
  printer.PrintInvoice(s, invoice, false);
  EXPECT_FALSE(HasText(s.Ops(), "Discount:"));
  EXPECT_FALSE(HasText(s.Ops(), "9.99"));
  EXPECT_FALSE(HasText(s.Ops(), " Other Expenses:"));
  EXPECT_FALSE(HasText(s.Ops(), "   ---Other Expenses---"));
  EXPECT_NEAR(FindText(s.Ops(), " Total:").y, kFoot + L, kNear);
  // No goods: no column captions, but the frame and the head are there.
  EXPECT_FALSE(HasText(s.Ops(), "Item #"));
  EXPECT_TRUE(HasText(s.Ops(), " INV-7"));
  EXPECT_EQ(testing::Lines(s.Ops()).size(), 1u + 6 + 1 + 2 + 1 + 1);  // frame, block, PO, totals divider
}

TEST_F(InvoiceBody, NotesAmountInWordsAndSignaturesFollowTheTotals) {
  PreviewSurface s;
  ClassInvoice invoice = testing::SampleInvoice();  // two totals rows: subtotal and total
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
  const double customer_length = s.TextWidth("Customer's Sign") + 1000;
  const double cashier_length = s.TextWidth("Autorization's Signature") + 1000;
  ExpectAt(FindText(s.Ops(), "Customer's Sign"), 1000 + 500, sign_y + 60);
  ExpectAt(FindText(s.Ops(), "Autorization's Signature"), 10906 - cashier_length + 500, sign_y + 60);
  int signing_lines = 0;
  for (const LineOp& l : testing::Lines(s.Ops())) {
    if (std::abs(l.y1 - sign_y) > kNear || std::abs(l.y2 - sign_y) > kNear) continue;
    ++signing_lines;
    const bool customer = std::abs(l.x1 - 1000) < kNear && std::abs(l.x2 - (1000 + customer_length)) < kNear;
    const bool cashier = std::abs(l.x1 - (10906 - cashier_length)) < kNear && std::abs(l.x2 - 10906) < kNear;
    EXPECT_TRUE(customer || cashier) << l.x1 << "-" << l.x2;
  }
  EXPECT_EQ(signing_lines, 2);
  EXPECT_EQ(testing::RulesCrossingTexts(s.Ops()), std::vector<std::string>{});
}

TEST_F(InvoiceBody, AmountCaptionFallsBackToTheSignThenToWords) {
  ClassInvoice invoice = testing::SampleInvoice();
  ModuleCompanyInfo::Profile().DefaultCurrencyName = "";
  ModuleCompanyInfo::Profile().DefaultCurrencySign = "AED";
  PreviewSurface by_sign;
  printer.PrintInvoice(by_sign, invoice, false);
  EXPECT_TRUE(HasText(by_sign.Ops(), "Amount in AEDs:"));

  ModuleCompanyInfo::Profile().DefaultCurrencySign = "";
  PreviewSurface plain;
  printer.PrintInvoice(plain, invoice, false);
  EXPECT_TRUE(HasText(plain.Ops(), "Amount in words:"));
  EXPECT_FALSE(HasText(plain.Ops(), "Customer's Sign"));  // PrintFooter is off

  invoice.SumOfTotal = "";
  PreviewSurface none;
  printer.PrintInvoice(none, invoice, false);
  EXPECT_FALSE(HasText(none.Ops(), "Amount in words:"));
}

// A surface whose EndDoc fails, as a late-bound call on an object without it would.
class SurfaceWithoutEndDoc : public Surface {
 public:
  double Width() const override { return 11906; }
  double Height() const override { return 16838; }
  void EndDoc() override {
    ++end_doc_calls;
    Raise(err::kNotSupported, "no EndDoc");
  }
  int end_doc_calls = 0;
  int drawn = 0;

 protected:
  void Emit(DrawOp) override { ++drawn; }
};

TEST_F(InvoiceBody, FailingEndDocIsIgnored) {
  SurfaceWithoutEndDoc surface;
  ClassInvoice invoice = testing::SampleInvoice();
  EXPECT_NO_THROW(printer.PrintInvoice(surface, invoice, false));
  EXPECT_EQ(surface.end_doc_calls, 1);
  EXPECT_GT(surface.drawn, 0);
}

}  // namespace
}  // namespace quorvel
