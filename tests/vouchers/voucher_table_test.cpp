// The payment-details table on its own: heading rounding, the fixed frame, fitted row values.
#include <gtest/gtest.h>

#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "support/ops_helpers.hpp"
#include "support/voucher_helpers.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {
namespace {

using testing::FindText;
using testing::HalfEven;
using testing::LineAt;
using testing::Measure;

const double L = LineAt(10);
const double kRuleXs[] = {1000, 2400, 3900, 5500, 7100, 8700, 10906};

// The shortening rule restated: cut to n characters plus "...", n falling by 3, until it fits.
std::string Shortened(std::string text, double width) {
  if (Measure(text) < width) return text;
  int n = static_cast<int>(text.size()) - 3;
  if (n < 0) n = 1;
  while (Measure(text) > width) {
    text = text.substr(0, static_cast<size_t>(n)) + "...";
    n = n - 3 < 0 ? 1 : n - 3;
  }
  return text;
}

TEST(VoucherTable, HeadingRowRoundsHalvesToEvenAndKeepsTheCallersSize) {
  ClassVoucherPrinter printer;
  for (const auto& [start, row] : {std::pair{1000.5, 1000.0}, std::pair{1001.5, 1002.0}}) {
    PreviewSurface s;
    s.Font().Size(12);
    s.CurrentY(start);
    printer.PrintPaymentDetailsHeader(s, true);
    EXPECT_EQ(s.Font().Size(), 12);
    const TextOp first = FindText(s.Ops(), "Invoice#");
    EXPECT_EQ(first.y, row) << start;
    EXPECT_EQ(first.size, 10);
    // "Credits" takes the whole half width: 7835 − Int(633.50 / 2) = 7519, where the rule of
    // the first two columns would give 7835 − 633 / 2 = 7518.5 → 7518.
    EXPECT_EQ(FindText(s.Ops(), "Credits").x, 7519);
    const auto lines = testing::Lines(s.Ops());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], (LineOp{1000, row + L, 10906, row + L}));
  }
}

TEST(VoucherTable, EmptyListDrawsTheFrameFromTheHeadingRule) {
  ClassVoucherPrinter printer;
  PreviewSurface s;
  s.CurrentY(2000);
  printer.PrintPaymentDetails(s, std::make_shared<Collection<ClassPayment>>(), false);
  const double row = HalfEven(2000 + L);  // 2229.98 → 2230
  ASSERT_EQ(row, 2230);
  EXPECT_EQ(FindText(s.Ops(), "Bill#").y, row);
  const auto lines = testing::Lines(s.Ops());
  ASSERT_EQ(lines.size(), 9u);
  const double top = row + L;
  EXPECT_EQ(lines[0], (LineOp{1000, top, 10906, top}));
  for (int k = 0; k < 7; ++k) EXPECT_EQ(lines[1 + k], (LineOp{kRuleXs[k], top, kRuleXs[k], top + 3000}));
  EXPECT_EQ(lines[8], (LineOp{1000, top, 10906, top}));  // directly under the heading rule
  EXPECT_EQ(s.CurrentY(), HalfEven(top) + L);
}

TEST(VoucherTable, RowsRunPastTheFrameAndTheBottomRoundsHalvesToEven) {
  ClassVoucherPrinter printer;
  auto list = std::make_shared<Collection<ClassPayment>>();
  for (int k = 0; k < 127; ++k) list->Add(testing::MakePayment("N" + std::to_string(k), "", "", "", "", ""));
  PreviewSurface s(11906, 40000);
  // The table's blank line brings the heading row to 1. A 10 pt line is 229.98046875, so the
  // heading and 127 rows end at 1 + 128 × 229.98046875 = 29438.5, which goes to the even 29438.
  s.CurrentY(1 - L);
  printer.PrintPaymentDetails(s, list, false);
  const double top = 1 + L;
  EXPECT_EQ(FindText(s.Ops(), " N126").y, 1 + 127 * L);
  EXPECT_GT(1 + 127 * L, top + 3000);  // the last rows lie below the vertical rules
  const auto lines = testing::Lines(s.Ops());
  ASSERT_EQ(lines.size(), 9u);
  EXPECT_EQ(lines[7], (LineOp{10906, top, 10906, top + 3000}));
  EXPECT_EQ(lines[8], (LineOp{1000, 29438.5, 10906, 29438.5}));
  EXPECT_EQ(s.CurrentY(), 29438 + L);
}

TEST(VoucherTable, AnUnsetPaymentFailsWithObjectNotSet) {
  ClassVoucherPrinter printer;
  ClassVoucher v;
  std::shared_ptr<ClassPayment> nothing;
  v.AddPayment(nothing);  // accepted unchecked, like any host object
  PreviewSurface s;
  try {
    printer.PrintPaymentDetails(s, v.Payments(), false);
    ADD_FAILURE() << "no error";
  } catch (const AutomationError& e) {
    EXPECT_EQ(e.Number(), err::kObjectNotSet);
  }
  EXPECT_EQ(testing::Lines(s.Ops()).size(), 1u);  // stopped after the heading rule
}

TEST(VoucherTable, RowValuesAreFittedAndAligned) {
  ClassVoucherPrinter printer;
  PreviewSurface s;
  s.CurrentY(500);
  const auto payment = testing::MakePayment("BL-88514-SUPPLEMENTARY", "05/22/2024", "123,456,789,012.00", "9.00",
                                            "", "1,234,567,890.00");
  printer.PrintPaymentDetailsInfo(s, *payment);
  const DrawOps& ops = s.Ops();
  const std::string number = Shortened("BL-88514-SUPPLEMENTARY", 1400);
  ASSERT_NE(number, "BL-88514-SUPPLEMENTARY");
  EXPECT_EQ(number.substr(number.size() - 3), "...");
  EXPECT_EQ(FindText(ops, " " + number).x, 1000);
  EXPECT_EQ(FindText(ops, "05/22/2024 ").x, 3900 - Measure("05/22/2024 "));  // never fitted
  const std::string original = Shortened("123,456,789,012.00", 1600) + " ";
  ASSERT_NE(original, "123,456,789,012.00 ");
  EXPECT_EQ(FindText(ops, original).x, 5500 - Measure(original));
  EXPECT_EQ(FindText(ops, "9.00 ").x, 7100 - Measure("9.00 "));
  // An empty value still prints its blank, right against the rule.
  EXPECT_EQ(FindText(ops, " ").x, 8700 - Measure(" "));
  const std::string paid = Shortened("1,234,567,890.00", 1470) + " ";
  EXPECT_EQ(FindText(ops, paid).x, 10906 - Measure(paid));
  for (const TextOp& t : testing::Texts(ops)) EXPECT_EQ(t.y, 500) << t.text;
  EXPECT_EQ(s.CurrentY(), 500 + L);
  EXPECT_EQ(payment->Number, "BL-88514-SUPPLEMENTARY");  // the host's text is not shortened
}

}  // namespace
}  // namespace quorvel
