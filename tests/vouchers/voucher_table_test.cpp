// The payment-details table on its own: heading rounding, the fixed frame, fitted row values.
#include <gtest/gtest.h>

#include <cmath>

#include "foundation/errors.hpp"
#include "support/ops_helpers.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {
namespace {

using testing::FindText;
using testing::Fitted;
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
  // Values just wider than their fitting lengths are cut, on the page only; empty values still
  // print their blank, right against the rule.
  const std::string wide[] = {testing::JustWider(1400), testing::JustWider(1600), testing::JustWider(1470)};
  const auto payment = testing::Share(ClassPayment{wide[0], "05/22/2024", wide[1], wide[1], wide[1], wide[2]});
  printer.PrintPaymentDetailsInfo(s, *payment);
  printer.PrintPaymentDetailsInfo(s, ClassPayment{});
  const std::string number = Fitted(wide[0], 1400), amount = Fitted(wide[1], 1600) + " ";
  const std::string paid = Fitted(wide[2], 1470) + " ";
  ASSERT_NE(number, wide[0]);
  const std::pair<std::string, double> cells[] = {
      {" " + number, 1000}, {"05/22/2024 ", 3900 - Measure("05/22/2024 ")},  // the date is never fitted
      {amount, 5500 - Measure(amount)}, {amount, 7100 - Measure(amount)}, {amount, 8700 - Measure(amount)},
      {paid, 10906 - Measure(paid)}, {" ", 1000}, {" ", 3900 - Measure(" ")}, {" ", 5500 - Measure(" ")},
      {" ", 7100 - Measure(" ")}, {" ", 8700 - Measure(" ")}, {" ", 10906 - Measure(" ")}};
  const auto texts = testing::Texts(s.Ops());
  ASSERT_EQ(texts.size(), 12u);
  for (size_t k = 0; k < 12; ++k)
    EXPECT_EQ(texts[k], (TextOp{cells[k].second, 500 + (k / 6) * L, "Arial", 10, false, cells[k].first})) << k;
  EXPECT_EQ(s.CurrentY(), 500 + 2 * L);
  EXPECT_EQ(payment->Number, wide[0]);
}

}  // namespace
}  // namespace quorvel
