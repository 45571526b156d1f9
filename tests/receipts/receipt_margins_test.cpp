// Receipt margins given as any text, the date line's clock, and the slip printed on roll paper.
#include <gtest/gtest.h>

#include <cstdio>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "receipts/margin_value.hpp"
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

class ReceiptMargins : public ::testing::Test {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    ClassCompanyInfo().SetCompanyInfo("Corner Shop", "1 Elm Street", "", "", "", "", "", "", "", "",
                                      "USD", "Dollar");
    SetReceiptClock(FixedTime);
  }
  void TearDown() override { SetReceiptClock({}); }

  static ClassInvoice Sale(const std::string& description = "Green tea") {
    ClassInvoice sale;
    sale.Store = "Main";
    sale.InvoiceNumber = "1001";
    auto item = std::make_shared<ClassInvoiceItem>();
    item->Description = description;
    item->Quantity = "12";
    item->UnitPrice = "2.00";
    item->Total = "24.00";
    sale.AddItem(item);
    sale.subTotal = "24.00";
    sale.Total = "24.00";
    sale.PaymentMethod = "Cash";
    sale.Received = "30.00";
    sale.Change = "6.00";
    return sale;
  }

  static DrawOps Printed(ClassInvoice& sale, const std::string& left, const std::string& right) {
    ReceiptPrinter printer;
    printer.POS_Left_Margin = left;
    printer.POS_Right_Margin = right;
    PreviewSurface surface(4535, 16838);
    printer.PrintReceipt(surface, sale);
    return surface.Ops();
  }

  static double Width8(const std::string& text) {
    PreviewSurface measure;
    measure.Font().Size(8);
    return measure.TextWidth(text);
  }

  // The text drawn at the description's place: the first line after the second rule.
  static std::vector<TextOp> ItemLine(const DrawOps& ops, double y) {
    std::vector<TextOp> line;
    for (const TextOp& t : testing::Texts(ops))
      if (t.y == y) line.push_back(t);
    return line;
  }

  const double L8 = LineAt(8);
  const double head = 10 + LineAt(10) + LineAt(8);
  const double item_y = head + 7 * LineAt(8);  // store, address, rule, number, date, currency, rule
};

TEST(MarginValue, TakesOnlyTextsThatAreNumbersAsAWhole) {
  EXPECT_EQ(SurfaceNumber(" 80"), 80);
  EXPECT_EQ(SurfaceNumber("12.5 "), 12.5);
  EXPECT_EQ(SurfaceNumber("-3"), -3);
  EXPECT_EQ(SurfaceNumber("+7"), 7);
  EXPECT_EQ(SurfaceNumber("1e3"), 1000);
  for (const char* bad : {"abc", "80abc", "", "  ", "+-3", "inf", "nan", "1e999"}) {
    try {
      SurfaceNumber(bad);
      ADD_FAILURE() << "\"" << bad << "\" accepted";
    } catch (const AutomationError& e) {
      EXPECT_EQ(e.Number(), err::kTypeMismatch) << bad;
    }
  }
}

TEST(ReceiptClock, TheDateLineReadsTheSettableClock) {
  EXPECT_EQ(ReceiptDateTimeText(FixedTime()), "03/15/24 14:05:09");  // C locale: %x %X
  SetReceiptClock([] { return std::time_t{12345}; });
  EXPECT_EQ(ReceiptNow(), 12345);
  SetReceiptClock({});
  const std::time_t before = std::time(nullptr);
  const std::time_t now = ReceiptNow();
  EXPECT_GE(now, before);
  EXPECT_LE(now, std::time(nullptr));
}

TEST_F(ReceiptMargins, ALeftMarginThatIsNoNumberLeavesThePenWhereItStands) {
  // Wider than the default room (3876 − 80) but within 3876 − num("abc") = 3876.
  std::string description = "Tea";
  while (Width8(description) <= 3796) description += "i";
  ASSERT_LT(Width8(description), 3876);

  ClassInvoice sale = Sale(description);
  const DrawOps ops = Printed(sale, "abc", " 300");
  for (const char* text : {"Main", "1 Elm Street", "Receipt# 1001", "03/15/24 14:05:09"})
    EXPECT_EQ(FindText(ops, text).x, 0) << text;  // every Print before left the pen at 0
  EXPECT_EQ(FindText(ops, description).x, 0);      // printed whole
  EXPECT_EQ(FindText(ops, "12").x, 0);              // num("abc") × 1.5
  EXPECT_DOUBLE_EQ(FindText(ops, "@").x, 9 * Width8("A"));
  EXPECT_NEAR(EndOf(FindText(ops, "24.00")), 3876, 1e-9);

  // With the default margins the same description is shortened.
  const DrawOps plain = Printed(sale, " 80", " 300");
  EXPECT_FALSE(HasText(plain, description));
}

TEST_F(ReceiptMargins, AnOverlongNameStaysCentredWhenTheMarginCannotBeTaken) {
  std::string name = "Corner";
  PreviewSurface bold;
  bold.Font().Bold(true);
  bold.Font().Size(8.25);
  while (bold.TextWidth(name) <= 4176) name += " Shop";
  ModuleCompanyInfo::Profile().CompanyName = name;
  ClassInvoice sale = Sale();
  EXPECT_DOUBLE_EQ(FindText(Printed(sale, "abc", " 300"), name).x, 2088 - bold.TextWidth(name) / 2);
}

TEST_F(ReceiptMargins, MarginsThatLeaveNoRoomStillFinishTheSlip) {
  ClassInvoice sale = Sale("Green tea with lemon");
  {
    // Left margin past the right edge: a width of 3876 − 5000 leaves the description cut as
    // far as the fitting goes: 20 characters cut after 17, 14, 11, 8, 5, 2 and 1, then "...".
    const DrawOps ops = Printed(sale, "5000", " 300");
    EXPECT_EQ(FindText(ops, "Main").x, 5000);
    const auto line = ItemLine(ops, item_y);
    ASSERT_EQ(line.size(), 1u);
    EXPECT_EQ(line[0].x, 5000);
    EXPECT_EQ(line[0].text, "G...");
    EXPECT_NEAR(EndOf(FindText(ops, "6.00")), 3876, 1e-9);
  }
  {
    // A right margin past the slip: amounts end at 4176 − 5000, the description is dots.
    const DrawOps ops = Printed(sale, " 80", "5000");
    EXPECT_NEAR(EndOf(FindText(ops, "6.00")), 4176 - 5000, 1e-9);
    EXPECT_EQ(ItemLine(ops, item_y)[0].text, "G...");
  }
  {
    // A width past 16 bits overflows: only the description's statement is skipped.
    const DrawOps ops = Printed(sale, " 80", "99999");
    for (const TextOp& t : testing::Texts(ops)) EXPECT_NE(t.text[0], 'G') << t.text;
    EXPECT_DOUBLE_EQ(FindText(ops, "12").y, item_y);  // the pen did not move down
    EXPECT_NEAR(EndOf(FindText(ops, "24.00")), 4176 - 99999, 1e-6);
    EXPECT_TRUE(HasText(ops, "         Change"));
  }
  {
    // A negative left margin widens the room: 3876 + 500 holds the description whole.
    const DrawOps ops = Printed(sale, "-500", " 300");
    EXPECT_EQ(FindText(ops, "Green tea with lemon").x, -500);
    EXPECT_EQ(FindText(ops, "12").x, -750);
  }
}

TEST_F(ReceiptMargins, PrintItMakesOneRollPageAsLongAsTheSlip) {
  SystemPrinter().SetPaper(Paper::Letter());
  const std::string dir = testing::TempDir("receipt-roll");
  SystemPrinter().SetOutput(PrinterOutput::ForPath(dir + "/slip.pdf"));
  ClassInvoice sale = Sale();
  sale.CustomerNote1 = "Thank You";
  ReceiptPrinter().PrintIt(sale);
  EXPECT_EQ(SystemPrinter().GetPaper().name, "letter");  // the previous paper is back

  const std::string info = testing::RunCommand("pdfinfo " + dir + "/slip.pdf");
  EXPECT_EQ(testing::PdfInfoField(info, "Pages"), "1");
  double width = 0, height = 0;
  ASSERT_EQ(std::sscanf(testing::PdfInfoField(info, "Page size").c_str(), "%lf x %lf", &width, &height), 2);
  EXPECT_DOUBLE_EQ(width, 4535.0 / 20);  // 80 mm
  // The slip ends where the feed leaves the pen: the name's line at y 10, then 8-pt lines:
  // blank, store, address, rule, number, date, currency, rule (8); the item (2); rule,
  // subtotal, rule, total, payment, change (6); two blank; the message; the CR-LF pair (2);
  // two blank: 23 lines.
  const double content = (10 + LineAt(10) + 23 * LineAt(8)) / 20;
  EXPECT_NEAR(height, content, 0.001);
  const std::string text = testing::RunCommand("pdftotext -layout " + dir + "/slip.pdf -");
  EXPECT_NE(text.find("Receipt# 1001"), std::string::npos);
  EXPECT_NE(text.find("Thank You"), std::string::npos);
}

}  // namespace
}  // namespace quorvel
