// The invoice's page head, column captions and frame, against positions worked out by hand.
#include <gtest/gtest.h>

#include <cmath>

#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/text_fitting.hpp"
#include "invoices/invoice_printer.hpp"
#include "support/invoices_helpers.hpp"

namespace quorvel {
namespace {

using testing::FindText;
using testing::HasText;
using testing::LineAt;

const double L = LineAt(10);
constexpr double kNear = 1e-6;

void ExpectAt(const TextOp& t, double x, double y) {
  EXPECT_NEAR(t.x, x, kNear) << t.text;
  EXPECT_NEAR(t.y, y, kNear) << t.text;
}

bool HasLine(const DrawOps& ops, double x1, double y1, double x2, double y2) {
  for (const LineOp& l : testing::Lines(ops))
    if (std::abs(l.x1 - x1) < kNear && std::abs(l.y1 - y1) < kNear && std::abs(l.x2 - x2) < kNear &&
        std::abs(l.y2 - y2) < kNear)
      return true;
  return false;
}

bool HasBox(const DrawOps& ops, double x1, double y1, double x2, double y2) {
  for (const BoxOp& b : testing::Boxes(ops))
    if (std::abs(b.x1 - x1) < kNear && std::abs(b.y1 - y1) < kNear && std::abs(b.x2 - x2) < kNear &&
        std::abs(b.y2 - y2) < kNear)
      return true;
  return false;
}

class InvoiceHeader : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetCompany(); }
  PreviewSurface s;
  ClassInvoicePrinter printer;
  ClassInvoice invoice = testing::SampleInvoice();
};

TEST_F(InvoiceHeader, NumberAndDateBlockStandAtTheRightOfTheTitle) {
  printer.PrintInvoiceHeader(s, invoice, false);
  const double y0 = 12 * L;  // twelve blank lines instead of the letterhead, from TopMargin 0
  const TextOp title = FindText(s.Ops(), "Invoice");
  ExpectAt(title, 1000, y0);
  EXPECT_EQ(title.size, 24);
  const double xn = 11906 - 1000 - 1400;
  const double xd = xn - 1500 - 15;
  ExpectAt(FindText(s.Ops(), " Invoice No."), xn, y0);
  ExpectAt(FindText(s.Ops(), " INV-7"), xn, y0 + L);
  ExpectAt(FindText(s.Ops(), " Date"), xd, y0);
  ExpectAt(FindText(s.Ops(), " 01/02/2024"), xd, y0 + L);
  EXPECT_EQ(FindText(s.Ops(), " Date").size, 10);  // back to 10 points after the title
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

TEST_F(InvoiceHeader, BillingLinesAreFittedAndShippingLinesAreNot) {
  const std::string long_line = "Westbrook Industrial Estate, Building 14, Loading Bay North";
  ASSERT_GT(s.TextWidth(long_line), 3500);
  invoice.Billing3 = long_line;
  invoice.Shipping3 = long_line;
  printer.PrintInvoiceHeader(s, invoice, false);

  const double yb = 15 * L;  // under the number/date block and its blank line
  const TextOp bill_to = FindText(s.Ops(), "Bill to:");
  ExpectAt(bill_to, 1000, yb);
  EXPECT_TRUE(bill_to.bold);
  ExpectAt(FindText(s.Ops(), " Fenwick Garden Centre"), 1000, yb + L);
  ExpectAt(FindText(s.Ops(), " 22 Orchard Way"), 1000, yb + 2 * L);

  std::string fitted = long_line;
  int16_t length = 3500;
  AdjustedText(s, fitted, length);
  ASSERT_NE(fitted, long_line);
  ASSERT_LE(s.TextWidth(fitted), 3500);
  const TextOp billing3 = FindText(s.Ops(), " " + fitted);
  ExpectAt(billing3, 1000, yb + 3 * L);
  EXPECT_FALSE(billing3.bold);
  EXPECT_EQ(invoice.Billing3, long_line);  // the invoice itself is not shortened

  const double xs = 11906 - 1000 - 3500;
  const TextOp ship_to = FindText(s.Ops(), "Ship to:");
  ExpectAt(ship_to, xs, yb);
  EXPECT_TRUE(ship_to.bold);
  ExpectAt(FindText(s.Ops(), " Fenwick Depot"), xs, yb + L);
  ExpectAt(FindText(s.Ops(), " " + long_line), xs, yb + 3 * L);  // whole, not fitted

  // Five address lines each, empty ones too, then a blank line and the purchase-order box.
  const double po_top = yb + 6 * L + L;
  ExpectAt(FindText(s.Ops(), " PO No."), 11906 - 1000 - 700 - s.TextWidth(" PO No.") / 2, po_top);
  ExpectAt(FindText(s.Ops(), " PO-88"), 11906 - 1000 - 1400, po_top + L);
  EXPECT_NEAR(s.CurrentY(), po_top + 3 * L, kNear);
}

TEST_F(InvoiceHeader, WithoutAddressesOrPurchaseOrderTheHeadIsShorter) {
  invoice.hasBilling = invoice.hasShipping = false;
  printer.PrintInvoiceHeader(s, invoice, false);
  EXPECT_FALSE(HasText(s.Ops(), "Bill to:"));
  EXPECT_FALSE(HasText(s.Ops(), "Ship to:"));
  EXPECT_FALSE(HasText(s.Ops(), " Fenwick Garden Centre"));
  // Block (12 + 3 lines), one blank line, purchase order (2 lines), one blank line.
  EXPECT_NEAR(s.CurrentY(), (15 + 1 + 2 + 1) * L, kNear);

  PreviewSurface without_po;
  printer.printLPONumber = false;
  printer.PrintInvoiceHeader(without_po, invoice, false);
  EXPECT_FALSE(HasText(without_po.Ops(), " PO No."));
  EXPECT_FALSE(HasText(without_po.Ops(), " PO-88"));
  EXPECT_NEAR(without_po.CurrentY(), (15 + 1 + 1) * L, kNear);
}

TEST_F(InvoiceHeader, CaptionsUseTheMeasuredTextRule) {
  s.Font().Size(12);
  s.CurrentY(5000.4);
  printer.PrintItemsHeader(s);
  const double y = 5000;  // the row starts at the whole-number y
  PreviewSurface m;       // 10-point measures
  ExpectAt(FindText(s.Ops(), "Item #"), 1750 - std::floor(m.TextWidth("Item #")), y);
  ExpectAt(FindText(s.Ops(), "Description"), 4650 - std::floor(m.TextWidth("Description")), y);
  // The last three measure only a leading part of what they print.
  ExpectAt(FindText(s.Ops(), "Qty"), 7380 - std::floor(m.TextWidth("Q")), y);
  ExpectAt(FindText(s.Ops(), "Unit Price"), 8695 - std::floor(m.TextWidth("Price")), y);
  ExpectAt(FindText(s.Ops(), "Amount"), 10165 - std::floor(m.TextWidth("Am")), y);
  EXPECT_EQ(FindText(s.Ops(), "Amount").size, 10);
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
}

TEST_F(InvoiceHeader, FrameLeavesOutTheBoxesThatWereNotPrinted) {
  invoice.hasBilling = false;
  printer.PrintInvoiceHeader(s, invoice, false);
  printer.printTable(s, s.CurrentY(), false, true, false);
  // Only the shipping box, hanging from its own caption's line since there is no billing one.
  const double xs = 11906 - 4500;
  EXPECT_TRUE(HasBox(s.Ops(), xs, 16 * L, xs + 3500, 16 * L + 1300));
  EXPECT_EQ(testing::Boxes(s.Ops()).size(), 3u);  // shipping, number/date, totals
  EXPECT_EQ(testing::RulesCrossingTexts(s.Ops()), std::vector<std::string>{});
}

}  // namespace
}  // namespace quorvel
