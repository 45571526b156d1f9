// Receipt slips: the head, item lines, totals, discounts, margins given as any text, the date
// line's clock, the message checks and the slip printed on roll paper.
#include <gtest/gtest.h>

#include <cstdio>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "receipts/margin_value.hpp"
#include "receipts/receipt_clock.hpp"
#include "receipts/receipt_printer.hpp"
#include "support/documents_helpers.hpp"

namespace quorvel {
namespace {

using testing::AllTexts;
using testing::EndOf;
using testing::FindText;
using testing::HasText;
using testing::LineAt;

const std::string kRule = "- - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - -";
const double L8 = LineAt(8);
// Under the company name (at y 10) and the blank line after it.
const double kHead = 10 + LineAt(10) + L8;
// The first item: under store, two address lines, rule, number, employee, date, currency, rule.
const double kItem = kHead + 9 * L8;

double Width8(const std::string& text) { return testing::Measure(text, 8); }

std::time_t FixedTime() {
  std::tm t{.tm_sec = 9, .tm_min = 5, .tm_hour = 14, .tm_mday = 15, .tm_mon = 2, .tm_year = 2024 - 1900,
            .tm_isdst = -1};
  return std::mktime(&t);
}

std::shared_ptr<ClassInvoiceItem> Line(std::string description, std::string quantity, std::string price,
                                       std::string total) {
  return testing::Share(
      ClassInvoiceItem{.Quantity = quantity, .UnitPrice = price, .Total = total, .Description = description});
}

TEST(MarginValue, TakesOnlyTextsThatAreNumbersAsAWhole) {
  const std::pair<const char*, double> good[] = {{" 80", 80}, {"12.5 ", 12.5}, {"-3", -3}, {"+7", 7}, {"1e3", 1000}};
  for (const auto& [text, value] : good) EXPECT_EQ(SurfaceNumber(text), value) << text;
  for (const char* bad : {"abc", "80abc", "", "  ", "+-3", "inf", "nan", "1e999"})
    EXPECT_EQ(testing::ErrorNumberOf([&] { SurfaceNumber(bad); }), err::kTypeMismatch) << bad;
}

TEST(ReceiptClock, TheDateLineReadsTheSettableClock) {
  EXPECT_EQ(ReceiptDateTimeText(FixedTime()), "03/15/24 14:05:09");  // C locale: %x %X
  SetReceiptClock([] { return std::time_t{12345}; });
  EXPECT_EQ(ReceiptNow(), 12345);
  SetReceiptClock({});
  const std::time_t before = std::time(nullptr);
  const std::time_t now = ReceiptNow();
  EXPECT_TRUE(now >= before && now <= std::time(nullptr));
}

TEST(ReceiptMessages, MoreThanFortyCharactersAreRefused) {
  ReceiptPrinter printer;
  EXPECT_EQ(printer.POS_Right_Margin, " 300");
  EXPECT_EQ(printer.POS_Left_Margin, " 80");
  const std::string forty(40, 'm');
  std::string accented;
  for (int i = 0; i < 40; ++i) accented += "\xC3\xA9";  // 40 characters in 80 bytes
  for (auto set : {&ReceiptPrinter::SetCustomerMessage1, &ReceiptPrinter::SetCustomerMessage2}) {
    EXPECT_NO_THROW((printer.*set)(forty));
    EXPECT_NO_THROW((printer.*set)(accented));
    try {
      (printer.*set)(forty + "m");
      ADD_FAILURE() << "41 characters accepted";
    } catch (const AutomationError& e) {
      EXPECT_EQ(e.Number(), -2147220604);
      EXPECT_EQ(e.Description(), "Message len must be less than 30");
    }
  }
}

class ReceiptLayout : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::ResetProfileWithCompany();
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
    sale.Total = "30.25";
    sale.PaymentMethod = "Cash";
    sale.Received = "40.00";
    sale.Change = "9.75";
    sale.CustomerNote1 = "Thank You";
    sale.CustomerNote2 = "Come Again";
    return sale;
  }

  static DrawOps Printed(ClassInvoice& sale, const std::string& left = " 80", const std::string& right = " 300") {
    ReceiptPrinter printer;
    printer.POS_Left_Margin = left;
    printer.POS_Right_Margin = right;
    PreviewSurface surface(4535, 16838);
    printer.PrintReceipt(surface, sale);
    return surface.Ops();
  }
};

TEST_F(ReceiptLayout, HeadLinesAtTheLeftMarginThenItemsOfOneOrTwoLines) {
  ClassInvoice sale = Sale();
  const DrawOps ops = Printed(sale);
  EXPECT_EQ(testing::Texts(ops).front(), (TextOp{0, 0, "Arial", 10, false, "\xE2\x80\xA6"}));
  const TextOp name = FindText(ops, "Larkspur Office Supply");
  EXPECT_TRUE(name.bold);
  EXPECT_EQ(name.size, 10);
  EXPECT_EQ(name.y, 10);
  EXPECT_DOUBLE_EQ(name.x + testing::WidthOf(name) / 2, 4176 / 2);

  const std::vector<std::string> lines = {"Main", "7 Tannery Row", "Millbrook", kRule, "Receipt# 1001",
                                          "Robin Vale", "03/15/24 14:05:09"};
  for (size_t i = 0; i < lines.size(); ++i) {
    const TextOp t = FindText(ops, lines[i]);
    EXPECT_EQ(t.x, lines[i] == kRule ? 0 : 80) << lines[i];  // rules start at the left edge
    EXPECT_DOUBLE_EQ(t.y, kHead + static_cast<double>(i) * L8) << lines[i];
    EXPECT_EQ(t.size, 8) << lines[i];
    EXPECT_FALSE(t.bold) << lines[i];
  }
  // The currency sign heads the amount column, in bold, ending at 4176 − 300.
  const TextOp currency = FindText(ops, "$");
  EXPECT_TRUE(currency.bold);
  EXPECT_DOUBLE_EQ(currency.y, kHead + 7 * L8);
  EXPECT_NEAR(EndOf(currency), 3876, 1e-9);
  EXPECT_DOUBLE_EQ(AllTexts(ops, kRule)[1].y, kItem - L8);

  // Two-line items put quantity, price and total under the description.
  testing::ExpectAt(FindText(ops, "Green tea"), 80, kItem);
  testing::ExpectAt(FindText(ops, "12"), 80 * 1.5, kItem + L8);
  testing::ExpectAt(FindText(ops, "@"), 80 + 9 * Width8("A"), kItem + L8);
  // After "@" ended its line the pen stood at the left edge: the price ends 20.7 "A" from it.
  const TextOp price = FindText(ops, "2.00");
  EXPECT_NEAR(EndOf(price), 20.7 * Width8("A"), 1e-9);
  EXPECT_DOUBLE_EQ(price.y, kItem + L8);
  const TextOp total = FindText(ops, "24.00");
  EXPECT_DOUBLE_EQ(total.y, kItem + L8);
  EXPECT_NEAR(EndOf(total), 3876, 1e-9);
  // The one-line item follows, its total on the description's line; its price is not printed.
  EXPECT_DOUBLE_EQ(FindText(ops, "Honey jar").y, kItem + 2 * L8);
  EXPECT_DOUBLE_EQ(FindText(ops, "6.50").y, kItem + 2 * L8);
  EXPECT_EQ(AllTexts(ops, "6.50").size(), 1u);
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
    EXPECT_DOUBLE_EQ(FindText(ops, "Loose item").y, kItem) << c.quantity;
    EXPECT_DOUBLE_EQ(FindText(ops, "7.77").y, c.one_line ? kItem : kItem + L8) << c.quantity;
    EXPECT_EQ(HasText(ops, "@"), !c.one_line) << c.quantity;
    EXPECT_DOUBLE_EQ(FindText(ops, "         Subtotal ").y, kItem + (c.one_line ? 2 : 3) * L8) << c.quantity;
  }
}

TEST_F(ReceiptLayout, TotalsCarryTheirIndentAsBlanksAtTheLeftEdgeAndTheSlipFeedsAndEnds) {
  testing::NoEndDocSurface surface(4535, 16838);
  ClassInvoice sale = Sale();
  ReceiptPrinter().PrintReceipt(surface, sale);
  const DrawOps& ops = surface.Ops();
  const double rule = kItem + 3 * L8;  // three item lines
  EXPECT_DOUBLE_EQ(AllTexts(ops, kRule)[2].y, rule);
  EXPECT_DOUBLE_EQ(AllTexts(ops, kRule)[3].y, rule + 2 * L8);  // between subtotal and total
  const std::tuple<std::string, std::string, int> rows[] = {
      {"         Subtotal ", "30.50", 1}, {"         Total      ", "30.25", 3},
      {"         Cash", "40.00", 4}, {"         Change", "9.75", 5}};
  for (const auto& [label, amount, line] : rows) {
    testing::ExpectAt(FindText(ops, label), 0, rule + line * L8);
    const TextOp a = FindText(ops, amount);
    EXPECT_DOUBLE_EQ(a.y, rule + line * L8) << amount;
    EXPECT_NEAR(EndOf(a), 3876, 1e-9) << amount;
  }
  EXPECT_FALSE(HasText(ops, "         Discount"));
  // Two blank lines, then the messages from the left edge; the CR-LF pair and two empty lines
  // feed the slip before the document ends.
  testing::ExpectAt(FindText(ops, "Thank You"), 0, rule + 8 * L8);
  EXPECT_DOUBLE_EQ(FindText(ops, "Come Again").y, rule + 9 * L8);
  EXPECT_DOUBLE_EQ(surface.CurrentY(), rule + 14 * L8);
  EXPECT_EQ(surface.end_doc_calls, 1);
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
    const double lines = c.label.empty() ? 0 : 1;
    EXPECT_DOUBLE_EQ(AllTexts(ops, kRule)[3].y, subtotal_y + (lines + 1) * L8) << c.percent;
    if (c.label.empty()) {
      EXPECT_FALSE(HasText(ops, "3.05"));
      continue;
    }
    EXPECT_DOUBLE_EQ(FindText(ops, c.label).y, subtotal_y + L8) << c.percent;
    const TextOp amount = FindText(ops, "3.05");
    EXPECT_DOUBLE_EQ(amount.y, subtotal_y + L8) << c.percent;
    EXPECT_NEAR(EndOf(amount), 3876, 1e-9);
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
  EXPECT_DOUBLE_EQ(AllTexts(ops, kRule)[0].y, kHead);
  EXPECT_DOUBLE_EQ(FindText(ops, "Receipt# 1001").y, kHead + L8);
  EXPECT_DOUBLE_EQ(FindText(ops, "03/15/24 14:05:09").y, kHead + 2 * L8);
  // The second message takes the first one's place.
  EXPECT_DOUBLE_EQ(FindText(ops, "Come Again").y, FindText(ops, "         Change").y + 3 * L8);
}

TEST_F(ReceiptLayout, AFailingStepIsSkippedAndTheSlipGoesOn) {
  testing::NoEndDocSurface surface;
  ClassInvoice sale = Sale();
  sale.Store = "\xff bad text";  // not UTF-8: printing it fails, and only that statement is lost
  EXPECT_NO_THROW(ReceiptPrinter().PrintReceipt(surface, sale));
  EXPECT_DOUBLE_EQ(FindText(surface.Ops(), "7 Tannery Row").y, kHead);
  EXPECT_TRUE(HasText(surface.Ops(), "Come Again"));
  EXPECT_EQ(surface.end_doc_calls, 1);
}

TEST_F(ReceiptLayout, CompanyNameShrinksThenMovesToTheLeftMarginUnlessThatFails) {
  std::string name = "Corner";
  while (testing::Measure(name + " Shop") <= 4176) name += " Shop";
  name += " Shop";  // wider than the slip at 10 pt bold too, since bold is wider still
  ASSERT_LE(testing::Measure(name, 8.25, true), 4176);
  ModuleCompanyInfo::Profile().CompanyName = name;
  ClassInvoice sale = Sale();
  const TextOp shrunk = FindText(Printed(sale), name);
  EXPECT_EQ(shrunk.size, 8.25);
  EXPECT_DOUBLE_EQ(shrunk.x, 2088 - testing::Measure(name, 8.25, true) / 2);

  while (testing::Measure(name, 8.25, true) <= 4176) name += " Shop";
  ModuleCompanyInfo::Profile().CompanyName = name;
  const TextOp left = FindText(Printed(sale), name);
  EXPECT_EQ(left.size, 8.25);
  EXPECT_EQ(left.x, 80);
  // The rows under it come down by the smaller size's line.
  EXPECT_DOUBLE_EQ(FindText(Printed(sale), "Main").y, 10 + LineAt(8.25) + L8);
  // A margin the surface cannot take leaves the name centred.
  EXPECT_DOUBLE_EQ(FindText(Printed(sale, "abc"), name).x, 2088 - testing::Measure(name, 8.25, true) / 2);
}

TEST_F(ReceiptLayout, ALeftMarginThatIsNoNumberLeavesThePenWhereItStands) {
  // Wider than the default room (3876 − 80) but within 3876 − num("abc") = 3876.
  std::string description = "Tea";
  while (Width8(description) <= 3796) description += "i";
  ASSERT_LT(Width8(description), 3876);
  ClassInvoice sale = Sale();
  sale.InvoiceItems()->Item(1)->Description = description;
  const DrawOps ops = Printed(sale, "abc");
  for (const char* text : {"Main", "7 Tannery Row", "Receipt# 1001", "03/15/24 14:05:09"})
    EXPECT_EQ(FindText(ops, text).x, 0) << text;  // every Print before left the pen at 0
  EXPECT_EQ(FindText(ops, description).x, 0);      // printed whole
  EXPECT_EQ(FindText(ops, "12").x, 0);              // num("abc") × 1.5
  EXPECT_DOUBLE_EQ(FindText(ops, "@").x, 9 * Width8("A"));
  EXPECT_NEAR(EndOf(FindText(ops, "24.00")), 3876, 1e-9);
  // The default margins leave 3876 − 80 = 3796 for it: it is shortened, on the page only.
  const std::string fitted = testing::Fitted(description, 3796, 8);
  ASSERT_NE(fitted, description);
  testing::ExpectAt(FindText(Printed(sale), fitted), 80, kItem);
  EXPECT_EQ(sale.InvoiceItems()->Item(1)->Description, description);
}

TEST_F(ReceiptLayout, MarginsThatLeaveNoRoomStillFinishTheSlip) {
  ClassInvoice sale = Sale();
  // A right margin past the slip: amounts end at 4176 − 5000, unclipped; the description is cut
  // as far as the fitting goes.
  DrawOps ops = Printed(sale, " 80", "5000");
  EXPECT_NEAR(EndOf(FindText(ops, "9.75")), 4176 - 5000, 1e-9);
  testing::ExpectAt(FindText(ops, testing::Fitted("Green tea", 4176 - 5000 - 80, 8)), 80, kItem);
  // A width past 16 bits overflows: only the description's statement is skipped.
  ops = Printed(sale, " 80", "99999");
  for (const TextOp& t : testing::Texts(ops)) EXPECT_NE(t.text[0], 'G') << t.text;
  EXPECT_DOUBLE_EQ(FindText(ops, "12").y, kItem);  // the pen did not move down
  EXPECT_NEAR(EndOf(FindText(ops, "24.00")), 4176 - 99999, 1e-6);
  EXPECT_TRUE(HasText(ops, "         Change"));
}

TEST_F(ReceiptLayout, PrintItMakesOneRollPageAsLongAsTheSlip) {
  SystemPrinter().SetPaper(Paper::Letter());
  const std::string pdf = testing::TempDir("receipt-roll") + "/slip.pdf";
  SystemPrinter().SetOutput(PrinterOutput::ForPath(pdf));
  ClassInvoice sale = Sale();
  ReceiptPrinter().PrintIt(sale);
  EXPECT_EQ(SystemPrinter().GetPaper().name, "letter");  // the previous paper is back

  const std::string info = testing::RunCommand("pdfinfo " + pdf);
  EXPECT_EQ(testing::PdfInfoField(info, "Pages"), "1");
  double width = 0, height = 0;
  ASSERT_EQ(std::sscanf(testing::PdfInfoField(info, "Page size").c_str(), "%lf x %lf", &width, &height), 2);
  EXPECT_DOUBLE_EQ(width, 4535.0 / 20);  // 80 mm
  // The slip ends where the feed leaves the pen: the name's line at y 10, then 8-pt lines:
  // blank, store, two addresses, rule, number, employee, date, currency, rule (10); the items
  // (3); rule, subtotal, rule, total, payment, change (6); two blank; two messages; the CR-LF
  // pair (2); two blank: 27 lines.
  EXPECT_NEAR(height, (10 + LineAt(10) + 27 * L8) / 20, 0.001);
  const std::string text = testing::RunCommand("pdftotext -layout " + pdf + " -");
  EXPECT_NE(text.find("Receipt# 1001"), std::string::npos);
  EXPECT_NE(text.find("Come Again"), std::string::npos);
}

}  // namespace
}  // namespace quorvel
