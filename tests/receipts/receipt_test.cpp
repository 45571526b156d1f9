// Receipt slips: the head, item lines, totals, discounts, margins and the message checks.
#include <gtest/gtest.h>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "receipts/receipt_clock.hpp"
#include "receipts/receipt_printer.hpp"
#include "support/notes_receipts_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using testing::EndOf;
using testing::FindText;
using testing::HasText;
using testing::LineAt;

const std::string kRule =
    "- - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - -";

std::time_t FixedTime() {
  std::tm t{};
  t.tm_year = 2024 - 1900;
  t.tm_mon = 2;
  t.tm_mday = 15;
  t.tm_hour = 14;
  t.tm_min = 5;
  t.tm_sec = 9;
  t.tm_isdst = -1;
  return std::mktime(&t);
}

std::shared_ptr<ClassInvoiceItem> Line(std::string description, std::string quantity,
                                       std::string price, std::string total) {
  auto item = std::make_shared<ClassInvoiceItem>();
  item->Description = std::move(description);
  item->Quantity = std::move(quantity);
  item->UnitPrice = std::move(price);
  item->Total = std::move(total);
  return item;
}

class ReceiptLayout : public ::testing::Test {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    ClassCompanyInfo().SetCompanyInfo("Corner Shop", "1 Elm Street", "Oldtown", "", "", "", "", "",
                                      "", "", "USD", "Dollar");
    SetReceiptClock(FixedTime);
  }
  void TearDown() override { SetReceiptClock({}); }

  static ClassInvoice Sale() {
    ClassInvoice sale;
    sale.Store = "Main";
    sale.InvoiceNumber = "1001";
    sale.EmployeeName = "Robin Vale";
    sale.AddItem(Line("Green tea", "12", "2.00", "24.00"));
    sale.AddItem(Line("Honey jar", "1", "6.50", "6.50"));
    sale.subTotal = "30.50";
    sale.Total = "30.50";
    sale.PaymentMethod = "Cash";
    sale.Received = "40.00";
    sale.Change = "9.50";
    sale.CustomerNote1 = "Thank You";
    sale.CustomerNote2 = "Come Again";
    return sale;
  }

  static DrawOps Printed(ClassInvoice& sale, const ReceiptPrinter& printer = ReceiptPrinter()) {
    PreviewSurface surface(4535, 16838);
    ReceiptPrinter copy = printer;
    copy.PrintReceipt(surface, sale);
    return surface.Ops();
  }

  static double WidthAt(double points, const std::string& text) {
    PreviewSurface measure;
    measure.Font().Size(points);
    return measure.TextWidth(text);
  }

  const double L10 = LineAt(10), L8 = LineAt(8);
  const double head = 10 + LineAt(10) + LineAt(8);  // under the name and the blank line after it
};

TEST_F(ReceiptLayout, StartsWithTheEllipsisThenCentresTheCompanyName) {
  ClassInvoice sale = Sale();
  const DrawOps ops = Printed(sale);
  const TextOp first = testing::Texts(ops).front();
  EXPECT_EQ(first.text, "\xE2\x80\xA6");
  EXPECT_EQ(first.x, 0);
  EXPECT_EQ(first.y, 0);
  EXPECT_EQ(first.size, 10);
  const TextOp name = FindText(ops, "Corner Shop");
  EXPECT_TRUE(name.bold);
  EXPECT_EQ(name.size, 10);
  EXPECT_EQ(name.y, 10);
  EXPECT_DOUBLE_EQ(name.x + testing::WidthOf(name) / 2, 4176 / 2);
}

TEST_F(ReceiptLayout, HeadLinesStartAtTheLeftMarginOneUnderAnother) {
  ClassInvoice sale = Sale();
  const DrawOps ops = Printed(sale);
  const std::vector<std::string> lines = {"Main", "1 Elm Street", "Oldtown", kRule, "Receipt# 1001",
                                          "Robin Vale", "03/15/24 14:05:09"};
  for (size_t i = 0; i < lines.size(); ++i) {
    const TextOp t = FindText(ops, lines[i]);
    EXPECT_EQ(t.x, lines[i] == kRule ? 0 : 80) << lines[i];
    EXPECT_DOUBLE_EQ(t.y, head + static_cast<double>(i) * L8) << lines[i];
    EXPECT_EQ(t.size, 8) << lines[i];
    EXPECT_FALSE(t.bold) << lines[i];
  }
  EXPECT_EQ(kRule.size(), 85u);
  const TextOp currency = FindText(ops, "USD");
  EXPECT_TRUE(currency.bold);
  EXPECT_DOUBLE_EQ(currency.y, head + 7 * L8);
  EXPECT_EQ(testing::AllTexts(ops, kRule)[1].y, head + 8 * L8);
}

TEST_F(ReceiptLayout, EveryAmountEndsAtTheRightMargin) {
  ClassInvoice sale = Sale();
  sale.HasDiscount = true;
  sale.DiscountPercent = "5";
  sale.InvoiceDiscount = "1.50";
  const DrawOps ops = Printed(sale);
  for (const char* amount : {"USD", "24.00", "6.50", "30.50", "1.50", "40.00", "9.50"})
    EXPECT_NEAR(EndOf(FindText(ops, amount)), 4176 - 300, 1e-9) << amount;
}

TEST_F(ReceiptLayout, TwoLineItemsPutQuantityPriceAndTotalUnderTheDescription) {
  ClassInvoice sale = Sale();
  const DrawOps ops = Printed(sale);
  const double y = head + 9 * L8;  // the first item, under the second rule
  const TextOp description = FindText(ops, "Green tea");
  EXPECT_EQ(description.x, 80);
  EXPECT_DOUBLE_EQ(description.y, y);
  const TextOp quantity = FindText(ops, "12");
  EXPECT_EQ(quantity.x, 80 * 1.5);
  EXPECT_DOUBLE_EQ(quantity.y, y + L8);
  const TextOp at = FindText(ops, "@");
  EXPECT_DOUBLE_EQ(at.x, 80 + 9 * WidthAt(8, "A"));
  EXPECT_DOUBLE_EQ(at.y, y + L8);
  // After "@" ended its line the pen stood at the left edge: the price ends 20.7 "A" from it.
  const TextOp price = FindText(ops, "2.00");
  EXPECT_NEAR(EndOf(price), 20.7 * WidthAt(8, "A"), 1e-9);
  EXPECT_DOUBLE_EQ(price.y, y + L8);
  EXPECT_DOUBLE_EQ(FindText(ops, "24.00").y, y + L8);
  // The one-line item follows, its total on the description's line; its price is not printed.
  EXPECT_DOUBLE_EQ(FindText(ops, "Honey jar").y, y + 2 * L8);
  EXPECT_DOUBLE_EQ(FindText(ops, "6.50").y, y + 2 * L8);
  EXPECT_EQ(testing::AllTexts(ops, "6.50").size(), 1u);
}

TEST_F(ReceiptLayout, TheWholePartOfTheQuantityChoosesOneOrTwoLines) {
  struct Case { std::string quantity; bool one_line; };
  for (const Case& c : {Case{"1", true}, Case{"1.9", true}, Case{"1abc", true}, Case{"0", false},
                        Case{"", false}, Case{"2", false}, Case{"-0.5", false}}) {
    ClassInvoice sale = Sale();
    sale.InvoiceItems()->Remove(2);
    sale.InvoiceItems()->Remove(1);
    sale.AddItem(Line("Loose item", c.quantity, "3.00", "7.77"));
    const DrawOps ops = Printed(sale);
    const double y = head + 9 * L8;
    EXPECT_DOUBLE_EQ(FindText(ops, "Loose item").y, y) << c.quantity;
    EXPECT_DOUBLE_EQ(FindText(ops, "7.77").y, c.one_line ? y : y + L8) << c.quantity;
    EXPECT_EQ(HasText(ops, "@"), !c.one_line) << c.quantity;
    EXPECT_DOUBLE_EQ(FindText(ops, "         Subtotal ").y, y + (c.one_line ? 2 : 3) * L8) << c.quantity;
  }
}

TEST_F(ReceiptLayout, TotalsCarryTheirIndentAsBlanksAtTheLeftEdge) {
  ClassInvoice sale = Sale();
  const DrawOps ops = Printed(sale);
  const double rule = head + 12 * L8;  // three item lines after the head
  EXPECT_EQ(testing::AllTexts(ops, kRule)[2].y, rule);
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"         Subtotal ", "30.50"}, {"", ""}, {"         Total      ", "30.50"},
      {"         Cash", "40.00"}, {"         Change", "9.50"}};
  for (size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].first.empty()) {
      EXPECT_EQ(testing::AllTexts(ops, kRule)[3].y, rule + 2 * L8);
      continue;
    }
    const TextOp label = FindText(ops, rows[i].first);
    EXPECT_EQ(label.x, 0) << rows[i].first;
    EXPECT_DOUBLE_EQ(label.y, rule + static_cast<double>(i + 1) * L8) << rows[i].first;
  }
  EXPECT_FALSE(HasText(ops, "         Discount"));
  // Two blank lines, then the messages from the left edge.
  const TextOp thanks = FindText(ops, "Thank You");
  EXPECT_EQ(thanks.x, 0);
  EXPECT_DOUBLE_EQ(thanks.y, rule + 8 * L8);
  EXPECT_DOUBLE_EQ(FindText(ops, "Come Again").y, rule + 9 * L8);
}

TEST_F(ReceiptLayout, DiscountLineFollowsTheFlagAndThePercentage) {
  struct Case { bool has; std::string percent; std::string label; };
  for (const Case& c : {Case{true, "10", "         Discount (10%)"}, Case{true, "0", "         Discount"},
                        Case{true, "-5", "         Discount"}, Case{true, "", "         Discount"},
                        Case{false, "10", ""}}) {
    ClassInvoice sale = Sale();
    sale.HasDiscount = c.has;
    sale.DiscountPercent = c.percent;
    sale.InvoiceDiscount = "3.05";
    const DrawOps ops = Printed(sale);
    const double subtotal_y = FindText(ops, "         Subtotal ").y;
    if (c.label.empty()) {
      EXPECT_FALSE(HasText(ops, "3.05"));
      EXPECT_DOUBLE_EQ(testing::AllTexts(ops, kRule)[3].y, subtotal_y + L8);
      continue;
    }
    EXPECT_DOUBLE_EQ(FindText(ops, c.label).y, subtotal_y + L8) << c.percent;
    EXPECT_DOUBLE_EQ(FindText(ops, "3.05").y, subtotal_y + L8) << c.percent;
    EXPECT_DOUBLE_EQ(testing::AllTexts(ops, kRule)[3].y, subtotal_y + 2 * L8) << c.percent;
  }
}

TEST_F(ReceiptLayout, EmptyOptionalFieldsPrintNoLine) {
  ModuleCompanyInfo::Profile().Address1 = "";
  ModuleCompanyInfo::Profile().Address2 = "";
  ClassInvoice sale = Sale();
  sale.Store = "";
  sale.EmployeeName = "";
  sale.CustomerNote1 = "";
  const DrawOps ops = Printed(sale);
  EXPECT_DOUBLE_EQ(testing::AllTexts(ops, kRule)[0].y, head);
  EXPECT_DOUBLE_EQ(FindText(ops, "Receipt# 1001").y, head + L8);
  EXPECT_DOUBLE_EQ(FindText(ops, "03/15/24 14:05:09").y, head + 2 * L8);
  // The second message takes the first one's place.
  EXPECT_DOUBLE_EQ(FindText(ops, "Come Again").y, FindText(ops, "         Change").y + 3 * L8);
}

TEST_F(ReceiptLayout, FeedsFourLinesAfterTheMessagesAndEndsTheDocument) {
  struct CountingSurface : PreviewSurface {
    CountingSurface() : PreviewSurface(4535, 16838) {}
    int ends = 0;
    void EndDoc() override { ++ends; }
  } surface;
  ClassInvoice sale = Sale();
  ReceiptPrinter().PrintReceipt(surface, sale);
  EXPECT_EQ(surface.ends, 1);
  EXPECT_DOUBLE_EQ(surface.CurrentY(), FindText(surface.Ops(), "Come Again").y + 5 * L8);
}

TEST_F(ReceiptLayout, AFailingStepIsSkippedAndTheSlipGoesOn) {
  struct NoEndDoc : PreviewSurface {
    void EndDoc() override { Raise(err::kNotSupported, "no EndDoc"); }
  } surface;
  ClassInvoice sale = Sale();
  sale.Store = "\xff bad text";  // not UTF-8: printing it fails, and only that statement is lost
  EXPECT_NO_THROW(ReceiptPrinter().PrintReceipt(surface, sale));
  EXPECT_DOUBLE_EQ(FindText(surface.Ops(), "1 Elm Street").y, head);
  EXPECT_TRUE(HasText(surface.Ops(), "Come Again"));
}

TEST_F(ReceiptLayout, DescriptionsAreFittedBetweenTheMargins) {
  ClassInvoice sale = Sale();
  std::string long_text = "Assorted biscuits";
  while (WidthAt(8, long_text) <= 4176 - 300 - 80) long_text += " and more biscuits";
  sale.InvoiceItems()->Item(1)->Description = long_text;
  const DrawOps ops = Printed(sale);
  const double y = head + 9 * L8;
  int fitted = 0;
  for (const TextOp& t : testing::Texts(ops)) {
    if (t.y != y || t.x != 80) continue;
    ++fitted;
    EXPECT_LE(testing::WidthOf(t), 3796);  // (4176 − 300) − 80
    EXPECT_EQ(t.text.substr(t.text.size() - 3), "...");
  }
  EXPECT_EQ(fitted, 1);
  EXPECT_EQ(sale.InvoiceItems()->Item(1)->Description, long_text);  // the document is untouched
}

TEST_F(ReceiptLayout, CompanyNameShrinksThenMovesToTheLeftMargin) {
  std::string name = "Corner";
  while (WidthAt(10, name + " Shop") <= 4176) name += " Shop";
  name += " Shop";  // wider than the slip at 10 pt bold too, since bold is wider still
  PreviewSurface bold;
  bold.Font().Bold(true);
  bold.Font().Size(8.25);
  ASSERT_LE(bold.TextWidth(name), 4176);
  ModuleCompanyInfo::Profile().CompanyName = name;
  ClassInvoice sale = Sale();
  const TextOp shrunk = FindText(Printed(sale), name);
  EXPECT_EQ(shrunk.size, 8.25);
  EXPECT_DOUBLE_EQ(shrunk.x, 2088 - bold.TextWidth(name) / 2);

  while (bold.TextWidth(name) <= 4176) name += " Shop";
  ModuleCompanyInfo::Profile().CompanyName = name;
  const TextOp left = FindText(Printed(sale), name);
  EXPECT_EQ(left.size, 8.25);
  EXPECT_EQ(left.x, 80);
  // The rows under it come down by the smaller size's line.
  EXPECT_DOUBLE_EQ(FindText(Printed(sale), "Main").y, 10 + LineAt(8.25) + L8);
}

TEST(ReceiptMessages, MoreThanFortyCharactersAreRefused) {
  ReceiptPrinter printer;
  const std::string forty(40, 'm');
  EXPECT_NO_THROW(printer.SetCustomerMessage1(forty));
  EXPECT_NO_THROW(printer.SetCustomerMessage2(forty));
  std::string accented;
  for (int i = 0; i < 40; ++i) accented += "\xC3\xA9";  // 40 characters in 80 bytes
  EXPECT_NO_THROW(printer.SetCustomerMessage1(accented));
  for (auto set : {&ReceiptPrinter::SetCustomerMessage1, &ReceiptPrinter::SetCustomerMessage2}) {
    try {
      (printer.*set)(forty + "m");
      ADD_FAILURE() << "41 characters accepted";
    } catch (const AutomationError& e) {
      EXPECT_EQ(e.Number(), -2147220604);
      EXPECT_EQ(e.Number(), err::kComponent);
      EXPECT_EQ(e.Description(), "Message len must be less than 30");
    }
  }
  EXPECT_EQ(printer.POS_Right_Margin, " 300");
  EXPECT_EQ(printer.POS_Left_Margin, " 80");
}

}  // namespace
}  // namespace quorvel
