// The payment-details table on its own: heading rounding, the fixed frame, fitted row values.
#include <gtest/gtest.h>

#include <cmath>

#include "foundation/errors.hpp"
#include "foundation/text_fitting.hpp"
#include "support/ops_helpers.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {
namespace {

using testing::FindText;
using testing::LineAt;
using testing::Measure;

const double L = LineAt(10);

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
    EXPECT_EQ(testing::Lines(s.Ops()), (std::vector<LineOp>{{1000, row + L, 10906, row + L}}));
  }
}

// The frame for a list of `count` payments printed from `start`: the heading rule, seven
// verticals 3000 long from it, and the bottom rule under the last row.
void ExpectFrame(int count, double start, double bottom) {
  ClassVoucherPrinter printer;
  auto list = std::make_shared<Collection<ClassPayment>>();
  for (int k = 0; k < count; ++k) list->Add(testing::Share(ClassPayment{"N" + std::to_string(k)}));
  PreviewSurface s(11906, 40000);
  s.CurrentY(start);
  printer.PrintPaymentDetails(s, list, false);
  const double row = std::nearbyint(start + L), top = row + L;  // after the table's blank line
  EXPECT_EQ(FindText(s.Ops(), "Bill#").y, row);
  std::vector<LineOp> want = {{1000, top, 10906, top}};
  for (double x : {1000, 2400, 3900, 5500, 7100, 8700, 10906}) want.push_back({x, top, x, top + 3000});
  want.push_back({1000, bottom, 10906, bottom});
  EXPECT_EQ(testing::Lines(s.Ops()), want);
  // One line below the bottom rule rounded to the whole twip, halves to even.
  EXPECT_EQ(s.CurrentY(), std::nearbyint(bottom) + L);
}

TEST(VoucherTable, FrameIsFixedWhateverTheRows) {
  // No rows: the bottom rule lies on the heading rule; 2000 + L = 2229.98 rounds to 2230.
  ExpectFrame(0, 2000, 2230 + L);
  // 127 rows run past the verticals: from 1 − L the heading row is at 1, and the heading and
  // 127 rows end at 1 + 128 × 229.98046875 = 29438.5, which goes to the even 29438.
  ExpectFrame(127, 1 - L, 29438.5);
}

TEST(VoucherTable, AnUnsetPaymentFailsWithObjectNotSet) {
  ClassVoucherPrinter printer;
  ClassVoucher v;
  std::shared_ptr<ClassPayment> nothing;
  v.AddPayment(nothing);  // accepted unchecked, like any host object
  PreviewSurface s;
  EXPECT_EQ(testing::ErrorNumberOf([&] { printer.PrintPaymentDetails(s, v.Payments(), false); }), err::kObjectNotSet);
  EXPECT_EQ(testing::Lines(s.Ops()).size(), 1u);  // stopped after the heading rule
}

TEST(VoucherTable, RowValuesAreFittedAndAligned) {
  ClassVoucherPrinter printer;
  PreviewSurface s;
  s.CurrentY(500);
  const auto payment = testing::Share(
      ClassPayment{"BL-88514-SUPPLEMENTARY", "05/22/2024", "123,456,789,012.00", "9.00", "", "1,234,567,890.00"});
  printer.PrintPaymentDetailsInfo(s, *payment);
  auto fitted = [&](std::string text, int16_t length) {
    AdjustedText(s, text, length);
    return text;
  };
  const std::string number = fitted(payment->Number, 1400), original = fitted(payment->OriginalAmount, 1600) + " ";
  ASSERT_NE(number, payment->Number);  // both too wide: they are shortened on the page only
  ASSERT_NE(original, payment->OriginalAmount + " ");
  const std::pair<std::string, double> cells[] = {
      {" " + number, 1000},
      {"05/22/2024 ", 3900 - Measure("05/22/2024 ")},  // never fitted
      {original, 5500 - Measure(original)},
      {"9.00 ", 7100 - Measure("9.00 ")},
      {" ", 8700 - Measure(" ")},  // an empty value still prints its blank, right against the rule
      {fitted(payment->Payments, 1470) + " ", 10906 - Measure(fitted(payment->Payments, 1470) + " ")}};
  const auto texts = testing::Texts(s.Ops());
  ASSERT_EQ(texts.size(), 6u);
  for (size_t k = 0; k < 6; ++k)
    EXPECT_EQ(texts[k], (TextOp{cells[k].second, 500, "Arial", 10, false, cells[k].first}));
  EXPECT_EQ(s.CurrentY(), 500 + L);
}

}  // namespace
}  // namespace quorvel
