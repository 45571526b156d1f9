// The invoice document, and the invoice's page head, column captions and frame against
// positions worked out by hand.
#include <gtest/gtest.h>

#include <cmath>

#include "foundation/company_info.hpp"
#include "invoices/invoice_printer.hpp"
#include "support/documents_helpers.hpp"

namespace quorvel {
namespace {

using testing::ExpectAt;
using testing::FindText;
using testing::HasBox;
using testing::HasLine;
using testing::HasText;
using testing::LineAt;

const double L = LineAt(10);

TEST(InvoiceModel, CaptionDefaultsAndListsMadeOnFirstUse) {
  ClassInvoice invoice;
  EXPECT_EQ(invoice.BillToTitle, "Bill to:");
  EXPECT_EQ(invoice.CustomerSign, "Customer's Sign");
  EXPECT_EQ(invoice.CashierSign, "Cashier's Sign");
  EXPECT_EQ(invoice.LPONumberTitle, " PO No.");  // the only caption with a leading blank
  EXPECT_EQ(invoice.DiscountTitle, "Discount:");
  EXPECT_FALSE(invoice.PrintFooter || invoice.hasShipping || invoice.hasBilling || invoice.HasDiscount);
  const ClassInvoicePrinter printer;
  EXPECT_TRUE(printer.printItemsTable && printer.printLPONumber);

  const auto items = invoice.InvoiceItems();
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->Count(), 0);
  auto item = testing::MakeItem("A", "");
  invoice.AddItem(item);
  invoice.AddItem(item);  // the same object twice is listed twice
  EXPECT_EQ(invoice.InvoiceItems(), items);
  ASSERT_EQ(items->Count(), 2);
  EXPECT_EQ(items->Item(2), item);
  // Expenses are a list of their own, and go into a collection the host assigned.
  auto own = std::make_shared<Collection<ClassInvoiceItem>>();
  invoice.OtherExpenses(own);
  invoice.AddExpense(item);
  EXPECT_EQ(invoice.OtherExpenses(), own);
  EXPECT_EQ(own->Count(), 1);
  EXPECT_EQ(items->Count(), 2);
}

class InvoiceHeader : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetProfileWithCompany(); }
  PreviewSurface s;
  ClassInvoicePrinter printer;
  ClassInvoice invoice = testing::SampleInvoice();
};

TEST_F(InvoiceHeader, BlocksStandWhereTheirRulesPutThem) {
  const std::string long_line = testing::JustWider(3500);
  invoice.Billing3 = long_line;
  invoice.Shipping3 = long_line;
  printer.PrintInvoiceHeader(s, invoice, false);
  const double y0 = 12 * L;  // twelve blank lines instead of the letterhead, from TopMargin 0
  const TextOp title = FindText(s.Ops(), "Invoice");
  ExpectAt(title, 1000, y0);
  EXPECT_EQ(title.size, 24);
  const double xn = 11906 - 1000 - 1400, xd = xn - 1500 - 15;
  ExpectAt(FindText(s.Ops(), " Invoice No."), xn, y0);
  ExpectAt(FindText(s.Ops(), " INV-7"), xn, y0 + L);
  ExpectAt(FindText(s.Ops(), " Date"), xd, y0);
  ExpectAt(FindText(s.Ops(), " 01/02/2024"), xd, y0 + L);
  EXPECT_EQ(FindText(s.Ops(), " Date").size, 10);  // back to 10 points after the title

  // Billing lines are fitted, shipping lines are not.
  const double yb = y0 + 3 * L;  // under the number/date block and its blank line
  const TextOp bill_to = FindText(s.Ops(), "Bill to:");
  ExpectAt(bill_to, 1000, yb);
  EXPECT_TRUE(bill_to.bold);
  ExpectAt(FindText(s.Ops(), " Fenwick Garden Centre"), 1000, yb + L);
  ExpectAt(FindText(s.Ops(), " 22 Orchard Way"), 1000, yb + 2 * L);

  const std::string fitted = testing::Fitted(long_line, 3500);
  ASSERT_NE(fitted, long_line);
  const TextOp billing3 = FindText(s.Ops(), " " + fitted);
  ExpectAt(billing3, 1000, yb + 3 * L);
  EXPECT_FALSE(billing3.bold);

  const double xs = 11906 - 1000 - 3500;
  const TextOp ship_to = FindText(s.Ops(), "Ship to:");
  ExpectAt(ship_to, xs, yb);
  EXPECT_TRUE(ship_to.bold);
  ExpectAt(FindText(s.Ops(), " Fenwick Depot"), xs, yb + L);
  ExpectAt(FindText(s.Ops(), " " + long_line), xs, yb + 3 * L);  // whole, not fitted

  // Five address lines each, empty ones too, then a blank line and the purchase-order box.
  const double po_top = yb + 6 * L + L;
  ExpectAt(FindText(s.Ops(), " PO No."), 11906 - 1000 - 700 - s.TextWidth(" PO No.") / 2, po_top);
  ExpectAt(FindText(s.Ops(), " PO-88"), xn, po_top + L);
  EXPECT_NEAR(s.CurrentY(), po_top + 3 * L, 1e-6);
}

TEST_F(InvoiceHeader, TitleFollowsTheTopMarginOrTheLetterhead) {
  ClassCompanyInfo().SetTopMargin(500);
  printer.PrintInvoiceHeader(s, invoice, false);
  ExpectAt(FindText(s.Ops(), "Invoice"), 1000, 500 + 12 * L);

  PreviewSurface with_letterhead;
  ClassCompanyInfo().SetTopMargin(0);
  printer.PrintInvoiceHeader(with_letterhead, invoice, true);
  ASSERT_TRUE(HasText(with_letterhead.Ops(), "Larkspur Office Supply"));
  // Two blank lines, the name at 20 pt, "7 Tannery Row", "Millbrook", the rule, a blank line.
  ExpectAt(FindText(with_letterhead.Ops(), "Invoice"), 1000, 2 * L + LineAt(20) + 2 * L + L);
}

TEST_F(InvoiceHeader, WithoutAddressesOrPurchaseOrderTheHeadIsShorter) {
  invoice.hasBilling = invoice.hasShipping = false;
  printer.PrintInvoiceHeader(s, invoice, false);
  for (const char* text : {"Bill to:", "Ship to:", " Fenwick Garden Centre", " Fenwick Depot"})
    EXPECT_FALSE(HasText(s.Ops(), text)) << text;
  // Block (12 + 3 lines), one blank line, purchase order (2 lines), one blank line.
  EXPECT_NEAR(s.CurrentY(), (15 + 1 + 2 + 1) * L, 1e-6);

  PreviewSurface without_po;
  printer.printLPONumber = false;
  printer.PrintInvoiceHeader(without_po, invoice, false);
  EXPECT_FALSE(HasText(without_po.Ops(), " PO No.") || HasText(without_po.Ops(), " PO-88"));
  EXPECT_NEAR(without_po.CurrentY(), (15 + 1 + 1) * L, 1e-6);
}

TEST_F(InvoiceHeader, CaptionsUseTheMeasuredTextRule) {
  s.Font().Size(12);
  s.CurrentY(5000.4);
  printer.PrintItemsHeader(s);
  const double y = 5000;  // the row starts at the whole-number y
  // The last three measure only a leading part of what they print.
  const std::tuple<const char*, double, const char*> captions[] = {
      {"Item #", 1750, "Item #"}, {"Description", 4650, "Description"}, {"Qty", 7380, "Q"},
      {"Unit Price", 8695, "Price"}, {"Amount", 10165, "Am"}};
  for (const auto& [caption, anchor, measured] : captions) {
    const TextOp t = FindText(s.Ops(), caption);
    ExpectAt(t, anchor - std::floor(testing::Measure(measured)), y);
    EXPECT_EQ(t.size, 10);
  }
  EXPECT_TRUE(HasLine(s.Ops(), 1000, y + L, 11906 - 1000, y + L));
  EXPECT_EQ(s.Font().Size(), 12);  // the caller's size comes back
}

TEST_F(InvoiceHeader, FrameEnclosesTheHeadAndRulesTheTable) {
  printer.PrintInvoiceHeader(s, invoice, false);
  const double top = s.CurrentY();
  printer.PrintItemsHeader(s);
  printer.printTable(s, top, true, true, true);
  const DrawOps& ops = s.Ops();
  const double foot = 16838 - 5500, right = 11906 - 1000;

  EXPECT_TRUE(HasLine(ops, 1000, top, right, top));
  for (double x : {1000.0, 1000.0 + 1500, 2500.0 + 4300, 6800.0 + 1160, 7960.0 + 1470, right})
    EXPECT_TRUE(HasLine(ops, x, top, x, foot)) << "vertical at " << x;
  EXPECT_TRUE(HasLine(ops, 1000, foot, right, foot));

  const double bill_bottom = 16 * L;  // under the billing caption
  EXPECT_TRUE(HasBox(ops, 1000, bill_bottom, 4500, bill_bottom + 1300));
  EXPECT_TRUE(HasBox(ops, 11906 - 4500, bill_bottom, 11906 - 4500 + 3500, bill_bottom + 1300));

  const double y0 = 12 * L, xn = 11906 - 2400, xd = xn - 1515;
  EXPECT_TRUE(HasBox(ops, xd, y0, right, y0 + 500));
  EXPECT_TRUE(HasLine(ops, xn, y0, xn, y0 + 500));        // between the date and number columns
  EXPECT_TRUE(HasLine(ops, xd, y0 + L, right, y0 + L));  // under the captions

  const double po_top = 22 * L;
  EXPECT_TRUE(HasBox(ops, xn, po_top, right, po_top + 500));
  EXPECT_TRUE(HasLine(ops, xn, po_top + L, right, po_top + L));

  const double label_x = 11906 - std::floor(11906.0 / 3);
  EXPECT_TRUE(HasBox(ops, label_x - 100, foot, right, foot + 4 * L));
  EXPECT_TRUE(HasLine(ops, right - 1300, foot, right - 1300, foot + 4 * L));
  EXPECT_EQ(testing::Lines(ops).size(), 1u + 1 + 6 + 1 + 2 + 1 + 1);  // captions rule, frame, block, PO, totals
  EXPECT_EQ(testing::Boxes(ops).size(), 5u);
  EXPECT_EQ(testing::RulesCrossingTexts(ops), std::vector<std::string>{});

  // Without billing only the shipping box, hanging from its own caption's line.
  invoice.hasBilling = false;
  PreviewSurface shipping;
  printer.PrintInvoiceHeader(shipping, invoice, false);
  printer.printTable(shipping, shipping.CurrentY(), false, true, false);
  EXPECT_TRUE(HasBox(shipping.Ops(), 11906 - 4500, 16 * L, 11906 - 1000, 16 * L + 1300));
  EXPECT_EQ(testing::Boxes(shipping.Ops()).size(), 3u);  // shipping, number/date, totals
  EXPECT_EQ(testing::RulesCrossingTexts(shipping.Ops()), std::vector<std::string>{});
}

}  // namespace
}  // namespace quorvel
