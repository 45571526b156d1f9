// Statement layout on a preview page: header, ledger grid, frame, totals, aging, notes, signatures.
#include <gtest/gtest.h>

#include <cmath>

#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"
#include "statements/statement_printer.hpp"
#include "support/ops_helpers.hpp"
#include "support/statements_helpers.hpp"

namespace quorvel {
namespace {

using testing::FindText;
using testing::HasText;
using testing::LineAt;

constexpr double kW = 11906, kH = 16838;
constexpr double kLimit = kH - 5500;  // BottomReserve of a created ClassCompanyInfo
const double L = LineAt(10);

double Measure(const std::string& text, double size = 10, bool bold = false) {
  PreviewSurface m;
  m.Font().Size(size);
  m.Font().Bold(bold);
  return m.TextWidth(text);
}

class StatementLayout : public ::testing::Test {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    ClassCompanyInfo info;
  }
  PreviewSurface page;
  ClassStatementPrinter printer;
};

TEST_F(StatementLayout, HeaderPlacesTitleDateBoxAndFittedBillingLines) {
  ClassStatement s;
  s.printTitle = "Statement";
  s.StatementDate = "31/03/2024";
  s.hasBilling = true;
  const std::string long_line(80, 'M');
  s.Billing1 = long_line;
  s.Billing2 = "Lantern Row 4";
  printer.PrintStatementHeader(page, s, false);
  const auto& ops = page.Ops();

  const double top = 12 * L;  // twelve empty lines in place of a letterhead, TopMargin 0
  const TextOp title = FindText(ops, "Statement");
  EXPECT_EQ(title.x, 1000);
  EXPECT_DOUBLE_EQ(title.y, top);
  EXPECT_EQ(title.size, 24);
  // Date box: left 11906 − 1000 − 1500 = 9406, texts centred on 9406 + 750.
  const TextOp date = FindText(ops, "Date");
  EXPECT_DOUBLE_EQ(date.x, 10156 - Measure("Date") / 2);
  EXPECT_DOUBLE_EQ(date.y, top);
  const TextOp value = FindText(ops, "31/03/2024");
  EXPECT_DOUBLE_EQ(value.x, 10156 - Measure("31/03/2024") / 2);
  EXPECT_DOUBLE_EQ(value.y, top + L);

  const TextOp bill_to = FindText(ops, "Bill to:");
  EXPECT_TRUE(bill_to.bold);
  EXPECT_DOUBLE_EQ(bill_to.y, top + 3 * L);  // after date, value and one empty line
  const auto texts = testing::Texts(ops);
  const TextOp first = texts[4];  // title, Date, value, Bill to:, then Billing1
  EXPECT_EQ(first.x, 1000);
  EXPECT_DOUBLE_EQ(first.y, top + 4 * L);
  EXPECT_FALSE(first.bold);
  ASSERT_EQ(first.text.substr(first.text.size() - 3), "...");
  EXPECT_LE(Measure(first.text.substr(1)), 3500);
  EXPECT_EQ(first.text[0], ' ');
  EXPECT_EQ(s.Billing1, long_line);  // fitting works on a copy
  EXPECT_DOUBLE_EQ(FindText(ops, " Lantern Row 4").y, top + 5 * L);
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
    EXPECT_DOUBLE_EQ(t.x, centre - static_cast<int>(Measure(label) / 2)) << label;
    EXPECT_EQ(t.y, 3000) << label;
    EXPECT_EQ(t.size, 10);
  }
  ASSERT_EQ(testing::Lines(ops).size(), 1u);
  EXPECT_EQ(testing::Lines(ops)[0], (LineOp{1000, 3000 + L, kW - 1000, 3000 + L}));
  EXPECT_EQ(page.Font().Size(), 12);  // the caller's size comes back
}

TEST_F(StatementLayout, LedgerRowFillsTheFiveCells) {
  ClassStatementItem it;
  it.TransactionDate = "05/03/2024";
  it.Description = "Invoice payment " + std::string(120, 'x');
  it.Debit = "1,250.00";
  it.Credit = "75.50";
  it.balance = "12,345,678.90";
  page.CurrentY(4000);
  printer.PrintItem(page, it);
  const auto texts = testing::Texts(page.Ops());
  ASSERT_EQ(texts.size(), 5u);
  for (const TextOp& t : texts) EXPECT_EQ(t.y, 4000) << t.text;
  EXPECT_EQ(texts[0].text, " 05/03/2024");
  EXPECT_EQ(texts[0].x, 1000);
  EXPECT_EQ(texts[1].x, 2500);
  EXPECT_EQ(texts[1].text.substr(0, 17), " Invoice payment ");
  EXPECT_EQ(texts[1].text.substr(texts[1].text.size() - 3), "...");
  EXPECT_LE(Measure(texts[1].text), 4800);
  EXPECT_EQ(texts[2].text, "1,250.00 ");
  EXPECT_DOUBLE_EQ(texts[2].x, 8460 - Measure("1,250.00 "));   // 2500 + 4800 + 1160
  EXPECT_EQ(texts[3].text, "75.50 ");
  EXPECT_DOUBLE_EQ(texts[3].x, 9620 - Measure("75.50 "));      // 2500 + 4800 + 2320
  EXPECT_EQ(texts[4].text, "12,345,678.90 ");
  EXPECT_DOUBLE_EQ(texts[4].x, kW - 1000 - Measure("12,345,678.90 "));
  EXPECT_DOUBLE_EQ(page.CurrentY(), 4000 + L);
  EXPECT_EQ(it.Description.size(), 16u + 120u);  // the host's line is not shortened
}

// One page of a statement with a few lines, printed whole.
class StatementPage : public StatementLayout {
 protected:
  void Print(ClassStatement& s) { printer.PrintStatement(page, s, false); }
  std::shared_ptr<ClassStatement> s = testing::SampleStatement(3, 0);
};

TEST_F(StatementPage, TotalsRowSitsOnThePageLimitInBold) {
  Print(*s);
  const auto& ops = page.Ops();
  const TextOp total = FindText(ops, "Total:");
  EXPECT_EQ(total.x, kW - 2 * 3968);  // Width − 2 × Int(Width / 3)
  EXPECT_EQ(total.y, kLimit);
  EXPECT_TRUE(total.bold);
  const std::pair<std::string, double> amounts[] = {
      {"2,000.00", 8460}, {"500.00", 9620}, {"1,500.00 ", kW - 1000}};
  for (const auto& [text, right] : amounts) {
    const TextOp t = FindText(ops, text);
    EXPECT_DOUBLE_EQ(t.x, right - Measure(text, 10, true)) << text;
    EXPECT_EQ(t.y, kLimit) << text;
    EXPECT_TRUE(t.bold);
  }
}

TEST_F(StatementPage, FrameRulesTheGridAndTheBoxesBelowIt) {
  s->hasBilling = true;
  Print(*s);
  const auto lines = testing::Lines(page.Ops());
  const double top = 12 * L + 3 * L + 6 * L + 2 * L;  // head, date block, billing block, two blank
  auto has_line = [&](LineOp want) {
    for (const LineOp& l : lines)
      if (l == want) return true;
    return false;
  };
  EXPECT_TRUE(has_line({1000, top, kW - 1000, top}));
  EXPECT_TRUE(has_line({1000, kLimit, kW - 1000, kLimit}));
  for (double x : {1000.0, 2500.0, 7300.0, 8460.0, 9620.0, kW - 1000})
    EXPECT_TRUE(has_line({x, top, x, kLimit})) << x;
  EXPECT_TRUE(has_line({9406, 13 * L, kW - 1000, 13 * L}));  // under the "Date" label
  EXPECT_TRUE(has_line({1000, kLimit + 400 + 266 + 50, kW - 1000, kLimit + 400 + 266 + 50}));
  const auto boxes = testing::Boxes(page.Ops());
  const std::vector<BoxOp> want = {
      {1000, 16 * L, 5000, 16 * L + 1300},          // billing, from under the bill-to title
      {9406, 12 * L, kW - 1000, 12 * L + 500},      // date box
      {1000, kLimit, kW - 1000, kLimit + 400},      // totals
      {1000, kLimit + 400, kW - 1000, kLimit + 1200}};  // aging
  EXPECT_EQ(boxes, want);
}

// The x of each aging separator: the ones from top to top + 800 of the aging box.
std::vector<double> AgingSeparators(const DrawOps& ops) {
  std::vector<double> xs;
  for (const LineOp& l : testing::Lines(ops))
    if (l.x1 == l.x2 && l.y1 == kLimit + 400 && l.y2 == kLimit + 1200) xs.push_back(l.x1);
  return xs;
}

TEST_F(StatementPage, StandardAgingCentresTitlesAndAmountsWithTheWideFifthColumn) {
  s->currentDue = "100.00";
  s->thirtyDaysDue = "200.00";
  s->sixtyDaysDue = "300.00";
  s->nintyDaysDue = "400.00";
  s->overNintyDaysDue = "550.00";  // the totals row holds "500.00"
  Print(*s);
  const auto& ops = page.Ops();
  const double w = 1651;  // Int((11906 − 2000) / 6)
  // Eight separators; the fifth moved 200 right, the sixth to eighth on or past the right edge.
  EXPECT_EQ(AgingSeparators(ops),
            (std::vector<double>{2651, 4302, 5953, 7604, 9255 + 200, 10906, 12557, 14208}));
  const double title_y = kLimit + 2 * L;  // the totals row, then one empty line
  const double amount_y = title_y + LineAt(8) + 100;
  const std::tuple<const char*, std::string, double> columns[] = {
      {"Current", "100.00", w},           {"1-30 Days Past Due", "200.00", w},
      {"31-60 Days Past Due", "300.00", w}, {"61-90 Days Past Due", "400.00", w},
      {"Over 90 Days Past Due", "550.00", w + 200}, {"Amount Due", "1,500.00", w + 200}};
  int k = 0;
  for (const auto& [title, amount, width] : columns) {
    const double left = 1000 + k++ * w;
    const TextOp t = FindText(ops, title);
    EXPECT_EQ(t.x, left + std::floor((width - Measure(title, 8)) / 2)) << title;
    EXPECT_DOUBLE_EQ(t.y, title_y) << title;
    EXPECT_EQ(t.size, 8);
    // "Amount Due" shows totalBalance without the blank the totals row adds.
    const TextOp a = FindText(ops, amount);
    EXPECT_EQ(a.x, left + std::floor((width - Measure(amount, 8)) / 2)) << amount;
    EXPECT_DOUBLE_EQ(a.y, amount_y) << amount;
  }
}

TEST_F(StatementPage, ByMonthAgingPrintsEightHostTitledColumns) {
  s->showByMonth = true;
  s->currentDue = "should not print";
  s->month1Title = "Jan";
  s->month1Value = "1.00";
  s->month8Title = "August 2024";
  s->month8Value = "8.00";
  Print(*s);
  const auto& ops = page.Ops();
  const double w = 1238;  // Int(9906 / 8)
  std::vector<double> want;
  for (int i = 1; i <= 8; ++i) want.push_back(1000 + i * w);  // no shift in this layout
  EXPECT_EQ(AgingSeparators(ops), want);
  const double title_y = kLimit + 2 * L;
  EXPECT_EQ(FindText(ops, "Jan").x, 1000 + std::floor((w - Measure("Jan", 8)) / 2));
  EXPECT_DOUBLE_EQ(FindText(ops, "Jan").y, title_y);
  EXPECT_EQ(FindText(ops, "August 2024").x, 1000 + 7 * w + std::floor((w - Measure("August 2024", 8)) / 2));
  const TextOp eight = FindText(ops, "8.00");
  EXPECT_EQ(eight.x, 1000 + 7 * w + std::floor((w - Measure("8.00", 8)) / 2));
  EXPECT_DOUBLE_EQ(eight.y, title_y + LineAt(8) + 100);
  EXPECT_FALSE(HasText(ops, "Current") || HasText(ops, "Amount Due") || HasText(ops, "should not print"));
}

TEST_F(StatementPage, NotesThenSignatureCaptionsWithTheirRules) {
  s->CustomerNote1 = "Thank you for your custom";
  s->CustomerNote3 = "Cheques payable to Quillmoor Trading";
  s->PrintFooter = true;
  Print(*s);
  const auto& ops = page.Ops();
  // After the aging amounts (size 8) come two empty lines, still at size 8.
  const double notes_y = kLimit + 2 * L + LineAt(8) + 100 + LineAt(8) + 2 * LineAt(8);
  const TextOp notes = FindText(ops, "Notes:");
  EXPECT_EQ(notes.x, 1000);
  EXPECT_DOUBLE_EQ(notes.y, notes_y);
  EXPECT_TRUE(notes.bold);
  EXPECT_EQ(notes.size, 10);
  EXPECT_DOUBLE_EQ(FindText(ops, "Thank you for your custom").y, notes_y + L);
  EXPECT_DOUBLE_EQ(FindText(ops, "Cheques payable to Quillmoor Trading").y, notes_y + 3 * L);

  const double caption_y = notes_y + 4 * L + 2 * L;
  const TextOp customer = FindText(ops, "Customer's Sign");
  const TextOp cashier = FindText(ops, "Cashier's Sign");
  EXPECT_EQ(customer.x, 1230);
  EXPECT_EQ(cashier.x, 6000);
  EXPECT_DOUBLE_EQ(customer.y, caption_y);
  EXPECT_DOUBLE_EQ(cashier.y, caption_y);
  const auto lines = testing::Lines(ops);
  ASSERT_GE(lines.size(), 2u);
  const double rule_y = caption_y + L;
  EXPECT_EQ(lines[lines.size() - 2],
            (LineOp{1000, rule_y, 1230 + Measure("Customer's Sign") + 460, rule_y}));
  EXPECT_EQ(lines.back(), (LineOp{5770, rule_y, 6000 + Measure("Cashier's Sign") + 230, rule_y}));
}

TEST_F(StatementPage, EmptyCustomerCaptionTakesTheCashiersEvenWithoutFooter) {
  s->CustomerSign = "";
  s->CashierSign = "Approved by";
  Print(*s);
  EXPECT_EQ(s->CustomerSign, "Approved by");
  EXPECT_EQ(s->CashierSign, "");
  EXPECT_FALSE(HasText(page.Ops(), "Approved by"));  // PrintFooter is off

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
  Print(*s);
  for (const TextOp& t : testing::Texts(page.Ops())) EXPECT_NE(t.text.rfind("Page", 0), 0u) << t.text;

  PreviewSurface flagged;
  s->PrintPDCChecks = true;  // no cheques: no list follows, but the page is numbered
  printer.PrintStatement(flagged, *s, false);
  const TextOp number = FindText(flagged.Ops(), "Page 1");
  EXPECT_DOUBLE_EQ(number.x, kW - 1000 - Measure("Page xx", 8));
  EXPECT_DOUBLE_EQ(number.y, kLimit + 6 * L);
  EXPECT_EQ(number.size, 8);
  EXPECT_FALSE(HasText(flagged.Ops(), "Post-Dated Cheques"));
}

TEST_F(StatementLayout, PostDatedChequesTitleIsOneLineAndTwoEmptyOnes) {
  page.CurrentX(700);
  page.CurrentY(2000);
  printer.PrintPDCChecks(page);
  const auto texts = testing::Texts(page.Ops());
  ASSERT_EQ(texts.size(), 1u);
  EXPECT_EQ(texts[0], (TextOp{700, 2000, "Arial", 10, false, "Post Dated Cheques"}));
  EXPECT_DOUBLE_EQ(page.CurrentY(), 2000 + 3 * L);
}

TEST_F(StatementLayout, ChecksHeaderStopsWith438AfterTheFirstLabel) {
  page.Font().Size(14);
  page.CurrentY(2500);
  try {
    printer.PrintChecksHeader(page);
    FAIL() << "the by-name member must be refused";
  } catch (const AutomationError& e) {
    EXPECT_EQ(e.Number(), err::kNotSupported);
  }
  const auto texts = testing::Texts(page.Ops());
  ASSERT_EQ(texts.size(), 1u);
  EXPECT_EQ(texts[0].text, "Trans.Date");
  EXPECT_EQ(texts[0].x, 1750 - std::floor(Measure("Trans.Date") / 2));  // Int(1500 / 2) + 1000
  EXPECT_EQ(texts[0].y, 2500);
  EXPECT_EQ(texts[0].size, 10);
  EXPECT_TRUE(testing::Lines(page.Ops()).empty());
  EXPECT_EQ(page.CurrentX(), 3250 - std::floor(Measure("Trans.#") / 2));  // placed, not printed
}

}  // namespace
}  // namespace quorvel
