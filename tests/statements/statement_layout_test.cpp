// The statement document, and its layout on a preview page: header, ledger grid, frame, totals,
// aging, notes, signatures and the post-dated cheques section's two small routines.
#include <gtest/gtest.h>

#include <cmath>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "statements/statement_printer.hpp"
#include "support/documents_helpers.hpp"

namespace quorvel {
namespace {

using testing::ExpectAt;
using testing::FindText;
using testing::Fitted;
using testing::HasText;
using testing::LineAt;
using testing::Measure;

constexpr double kW = 11906;
constexpr double kLimit = testing::kFoot;
const double L = LineAt(10);

TEST(StatementModel, DefaultsAndCollectionsSharedWithTheHost) {
  ClassStatement s;
  EXPECT_EQ(s.BillToTitle, "Bill to:");
  EXPECT_EQ(s.CustomerSign, "Customer's Sign");
  EXPECT_EQ(s.CashierSign, "Cashier's Sign");
  EXPECT_EQ(s.printTitle + s.totalBalance + s.nintyDaysDue + s.overNintyDaysDue + s.month8Value + s.PDCTotal, "");
  EXPECT_FALSE(s.showByMonth || s.PrintFooter || s.hasShipping || s.hasBilling || s.HasDiscount || s.PrintPDCChecks);
  const auto items = s.StatementItems();
  const auto checks = s.PDCChecks();
  ASSERT_TRUE(items && checks);
  EXPECT_EQ(items->Count() + checks->Count(), 0);
  auto first = testing::LedgerLine(1), second = testing::LedgerLine(2);
  s.AddItem(first);
  s.AddItem(second);
  s.AddItem(first);  // twice when added twice
  s.AddChecks(testing::Cheque(1));
  EXPECT_EQ(s.StatementItems(), items);  // the same objects the host already holds
  EXPECT_EQ(s.PDCChecks(), checks);
  ASSERT_EQ(items->Count(), 3);
  EXPECT_EQ(items->Item(2), second);
  EXPECT_EQ(items->Item(3), first);
  EXPECT_EQ(checks->Count(), 1);
}

class StatementLayout : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetProfile(); }
  PreviewSurface page;
  ClassStatementPrinter printer;
};

TEST_F(StatementLayout, HeaderPlacesTitleDateBoxAndFittedBillingLines) {
  ClassStatement s;
  s.printTitle = "Statement";
  s.StatementDate = "31/03/2024";
  s.hasBilling = true;
  const std::string long_line = testing::JustWider(3500);
  s.Billing1 = long_line;
  s.Billing2 = "Lantern Row 4";
  printer.PrintStatementHeader(page, s, false);
  const auto& ops = page.Ops();

  const double top = 12 * L;  // twelve empty lines in place of a letterhead, TopMargin 0
  const TextOp title = FindText(ops, "Statement");
  ExpectAt(title, 1000, top);
  EXPECT_EQ(title.size, 24);
  // Date box: left 11906 − 1000 − 1500 = 9406, texts centred on 9406 + 750.
  ExpectAt(FindText(ops, "Date"), 10156 - Measure("Date") / 2, top);
  ExpectAt(FindText(ops, "31/03/2024"), 10156 - Measure("31/03/2024") / 2, top + L);

  const TextOp bill_to = FindText(ops, "Bill to:");
  EXPECT_TRUE(bill_to.bold);
  ExpectAt(bill_to, 1000, top + 3 * L);  // after date, value and one empty line
  const std::string fitted = Fitted(long_line, 3500);
  ASSERT_NE(fitted, long_line);
  const TextOp first = FindText(ops, " " + fitted);
  ExpectAt(first, 1000, top + 4 * L);
  EXPECT_FALSE(first.bold);
  ExpectAt(FindText(ops, " Lantern Row 4"), 1000, top + 5 * L);
  EXPECT_DOUBLE_EQ(page.CurrentY(), top + 9 * L + 2 * L);  // five lines, then two empty ones
}

TEST_F(StatementLayout, ColumnLabelsAreCentredOnTheGrid) {
  page.Font().Size(12);
  page.CurrentY(3000);
  printer.PrintItemsHeader(page);
  const auto& ops = page.Ops();
  // Centres: 1000 + 750, 2500 + 4800 / 2, 7300 + 580, 8460 + 580, 9620 + 1470 / 2.
  const std::pair<const char*, double> labels[] = {
      {"Date", 1750}, {"Description", 4900}, {"Debit", 7880}, {"Credit", 9040}, {"Balance", 10355}};
  for (const auto& [label, centre] : labels) {
    const TextOp t = FindText(ops, label);
    ExpectAt(t, centre - static_cast<int>(Measure(label) / 2), 3000);
    EXPECT_EQ(t.size, 10);
  }
  EXPECT_EQ(testing::Lines(ops), (std::vector<LineOp>{{1000, 3000 + L, kW - 1000, 3000 + L}}));
  EXPECT_EQ(page.Font().Size(), 12);  // the caller's size comes back
}

TEST_F(StatementLayout, LedgerRowFillsTheFiveCells) {
  // Each cell (its value with the blank) just wider than its length: cut, on the page only.
  const double blank = Measure(" ");
  const std::string amount = testing::JustWider(1160 - blank), balance = testing::JustWider(1470 - blank);
  ClassStatementItem it{.Description = testing::JustWider(4800 - blank),
                        .TransactionDate = testing::JustWider(1500 - blank),
                        .Debit = amount, .Credit = amount, .balance = balance};
  page.CurrentY(4000);
  printer.PrintItem(page, it);
  const std::string cut = Fitted(amount + " ", 1160), cut_balance = Fitted(balance + " ", 1470);
  ASSERT_NE(cut, amount + " ");
  const std::pair<std::string, double> cells[] = {{Fitted(" " + it.TransactionDate, 1500), 1000},
                                                  {Fitted(" " + it.Description, 4800), 2500},
                                                  {cut, 8460 - Measure(cut)},  // 2500 + 4800 + 1160
                                                  {cut, 9620 - Measure(cut)},  // 2500 + 4800 + 2320
                                                  {cut_balance, kW - 1000 - Measure(cut_balance)}};
  const auto texts = testing::Texts(page.Ops());
  ASSERT_EQ(texts.size(), 5u);
  for (size_t k = 0; k < 5; ++k) {
    EXPECT_EQ(texts[k].text, cells[k].first);
    ExpectAt(texts[k], cells[k].second, 4000);
  }
  EXPECT_DOUBLE_EQ(page.CurrentY(), 4000 + L);
  EXPECT_EQ(it.balance, balance);
}

// One page of a statement with a few lines, printed whole.
class StatementPage : public StatementLayout {
 protected:
  const DrawOps& Print() {
    printer.PrintStatement(page, *s, false);
    return page.Ops();
  }
  std::shared_ptr<ClassStatement> s = testing::SampleStatement(3, 0);
};

TEST_F(StatementPage, FrameRulesTheGridAndTheBoxesBelowItThenNotesAndSignatures) {
  s->hasBilling = true;  // moves the grid's top, not the foot
  s->CustomerNote1 = "Thank you for your custom";
  s->CustomerNote3 = "Cheques payable to Quillmoor Trading";
  s->PrintFooter = true;
  const DrawOps& ops = Print();
  const double top = 12 * L + 3 * L + 6 * L + 2 * L;  // head, date block, billing block, two blank
  EXPECT_TRUE(testing::HasLine(ops, 1000, top, kW - 1000, top));
  EXPECT_TRUE(testing::HasLine(ops, 1000, kLimit, kW - 1000, kLimit));
  for (double x : {1000.0, 2500.0, 7300.0, 8460.0, 9620.0, kW - 1000})
    EXPECT_TRUE(testing::HasLine(ops, x, top, x, kLimit)) << x;
  EXPECT_TRUE(testing::HasLine(ops, 9406, 13 * L, kW - 1000, 13 * L));  // under the "Date" label
  EXPECT_TRUE(testing::HasLine(ops, 1000, kLimit + 400 + 266 + 50, kW - 1000, kLimit + 400 + 266 + 50));
  const std::vector<BoxOp> want = {
      {1000, 16 * L, 5000, 16 * L + 1300},              // billing, from under the bill-to title
      {9406, 12 * L, kW - 1000, 12 * L + 500},          // date box
      {1000, kLimit, kW - 1000, kLimit + 400},          // totals
      {1000, kLimit + 400, kW - 1000, kLimit + 1200}};  // aging
  EXPECT_EQ(testing::Boxes(ops), want);

  // After the aging amounts (size 8) come two empty lines, still at size 8.
  const double notes_y = kLimit + 2 * L + LineAt(8) + 100 + LineAt(8) + 2 * LineAt(8);
  const TextOp notes = FindText(ops, "Notes:");
  ExpectAt(notes, 1000, notes_y);
  EXPECT_TRUE(notes.bold);
  EXPECT_EQ(notes.size, 10);
  ExpectAt(FindText(ops, "Thank you for your custom"), 1000, notes_y + L);
  ExpectAt(FindText(ops, "Cheques payable to Quillmoor Trading"), 1000, notes_y + 3 * L);

  const double caption_y = notes_y + 4 * L + 2 * L, rule_y = caption_y + L;
  ExpectAt(FindText(ops, "Customer's Sign"), 1230, caption_y);
  ExpectAt(FindText(ops, "Cashier's Sign"), 6000, caption_y);
  const auto lines = testing::Lines(ops);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2], (LineOp{1000, rule_y, 1230 + Measure("Customer's Sign") + 460, rule_y}));
  EXPECT_EQ(lines.back(), (LineOp{5770, rule_y, 6000 + Measure("Cashier's Sign") + 230, rule_y}));
}

// The x of each aging separator: the lines from top to top + 800 of the aging box.
std::vector<double> AgingSeparators(const DrawOps& ops) {
  std::vector<double> xs;
  for (const LineOp& l : testing::Lines(ops))
    if (l.x1 == l.x2 && l.y1 == kLimit + 400 && l.y2 == kLimit + 1200) xs.push_back(l.x1);
  return xs;
}

// Column k of an aging layout of columns `w` wide: title and amount centred in `width`.
void ExpectAgingColumn(const DrawOps& ops, int k, double w, double width, const std::string& title,
                       const std::string& amount) {
  const double left = 1000 + k * w, title_y = kLimit + 2 * L;  // the totals row, then one empty line
  const TextOp t = FindText(ops, title);
  ExpectAt(t, left + std::floor((width - Measure(title, 8)) / 2), title_y);
  EXPECT_EQ(t.size, 8);
  ExpectAt(FindText(ops, amount), left + std::floor((width - Measure(amount, 8)) / 2), title_y + LineAt(8) + 100);
}

TEST_F(StatementPage, TotalsRowOnThePageLimitThenStandardAgingWithTheWideFifthColumn) {
  s->currentDue = "100.00";
  s->thirtyDaysDue = "200.00";
  s->sixtyDaysDue = "300.00";
  s->nintyDaysDue = "400.00";
  s->overNintyDaysDue = "550.00";  // the totals row holds "500.00"
  const DrawOps& ops = Print();
  const TextOp total = FindText(ops, "Total:");
  ExpectAt(total, kW - 2 * 3968, kLimit);  // Width − 2 × Int(Width / 3)
  EXPECT_TRUE(total.bold);
  const std::pair<std::string, double> amounts[] = {{"2,000.00", 8460}, {"500.00", 9620}, {"1,500.00 ", kW - 1000}};
  for (const auto& [text, right] : amounts) {
    const TextOp t = FindText(ops, text);
    ExpectAt(t, right - Measure(text, 10, true), kLimit);
    EXPECT_TRUE(t.bold);
  }

  const double w = 1651;  // Int((11906 − 2000) / 6)
  // Eight separators; the fifth moved 200 right, the sixth to eighth on or past the right edge.
  EXPECT_EQ(AgingSeparators(ops), (std::vector<double>{2651, 4302, 5953, 7604, 9255 + 200, 10906, 12557, 14208}));
  // "Amount Due" shows totalBalance without the blank the totals row adds.
  const std::tuple<const char*, std::string, double> columns[] = {
      {"Current", "100.00", w},           {"1-30 Days Past Due", "200.00", w},
      {"31-60 Days Past Due", "300.00", w}, {"61-90 Days Past Due", "400.00", w},
      {"Over 90 Days Past Due", "550.00", w + 200}, {"Amount Due", "1,500.00", w + 200}};
  int k = 0;
  for (const auto& [title, amount, width] : columns) ExpectAgingColumn(ops, k++, w, width, title, amount);
}

TEST_F(StatementPage, ByMonthAgingPrintsEightHostTitledColumns) {
  s->showByMonth = true;
  s->currentDue = "should not print";
  s->month1Title = "Jan";
  s->month1Value = "1.00";
  s->month8Title = "August 2024";
  s->month8Value = "8.00";
  const DrawOps& ops = Print();
  const double w = 1238;  // Int(9906 / 8)
  std::vector<double> want;
  for (int i = 1; i <= 8; ++i) want.push_back(1000 + i * w);  // no shift in this layout
  EXPECT_EQ(AgingSeparators(ops), want);
  ExpectAgingColumn(ops, 0, w, w, "Jan", "1.00");
  ExpectAgingColumn(ops, 7, w, w, "August 2024", "8.00");
  EXPECT_FALSE(HasText(ops, "Current") || HasText(ops, "Amount Due") || HasText(ops, "should not print"));
}

TEST_F(StatementPage, EmptyCustomerCaptionTakesTheCashiersEvenWithoutFooter) {
  s->CustomerSign = "";
  s->CashierSign = "Approved by";
  EXPECT_FALSE(HasText(Print(), "Approved by"));  // PrintFooter is off
  EXPECT_EQ(s->CustomerSign, "Approved by");
  EXPECT_EQ(s->CashierSign, "");

  PreviewSurface second;
  s->CustomerSign = "";
  s->CashierSign = "Approved by";
  s->PrintFooter = true;
  printer.PrintStatement(second, *s, false);
  const TextOp caption = FindText(second.Ops(), "Approved by");
  EXPECT_EQ(caption.x, 1230);  // the single caption stands on the left
  const LineOp rule = testing::Lines(second.Ops()).back();
  EXPECT_EQ(rule, (LineOp{1000, caption.y + L, 1230 + Measure("Approved by") + 460, caption.y + L}));
}

TEST_F(StatementPage, PageNumberOnlyWhenThereIsMoreThanOnePageOrAChequeList) {
  for (const TextOp& t : testing::Texts(Print())) EXPECT_NE(t.text.rfind("Page", 0), 0u) << t.text;

  PreviewSurface flagged;
  s->PrintPDCChecks = true;  // no cheques: no list follows, but the page is numbered
  printer.PrintStatement(flagged, *s, false);
  const TextOp number = FindText(flagged.Ops(), "Page 1");
  ExpectAt(number, kW - 1000 - Measure("Page xx", 8), kLimit + 6 * L);
  EXPECT_EQ(number.size, 8);
  EXPECT_FALSE(HasText(flagged.Ops(), "Post-Dated Cheques"));
}

TEST_F(StatementLayout, ChequeSectionTitleTakesThreeLinesAndItsHeaderStopsWith438) {
  page.CurrentX(700);
  page.CurrentY(2000);
  printer.PrintPDCChecks(page);
  EXPECT_EQ(testing::Texts(page.Ops()), (std::vector<TextOp>{{700, 2000, "Arial", 10, false, "Post Dated Cheques"}}));
  EXPECT_DOUBLE_EQ(page.CurrentY(), 2000 + 3 * L);  // its line and two empty ones

  PreviewSurface header;
  header.Font().Size(14);
  header.CurrentY(2500);
  EXPECT_EQ(testing::ErrorNumberOf([&] { printer.PrintChecksHeader(header); }), err::kNotSupported);
  // Int(1500 / 2) + 1000 = 1750 − half the width.
  const TextOp first{1750 - std::floor(Measure("Trans.Date") / 2), 2500, "Arial", 10, false, "Trans.Date"};
  EXPECT_EQ(testing::Texts(header.Ops()), std::vector<TextOp>{first});
  EXPECT_TRUE(testing::Lines(header.Ops()).empty());
  EXPECT_EQ(header.CurrentX(), 3250 - std::floor(Measure("Trans.#") / 2));  // placed, not printed
}

}  // namespace
}  // namespace quorvel
