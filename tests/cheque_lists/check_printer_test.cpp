// Cheque-list layout and paging: headings, rows, frame, page numbers, the total, page ops.
#include <gtest/gtest.h>

#include <cmath>

#include "cheque_lists/check_printer.hpp"
#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "support/ops_helpers.hpp"
#include "support/statements_helpers.hpp"

namespace quorvel {
namespace {

using testing::CountOps;
using testing::FindText;
using testing::HasText;
using testing::LineAt;
using testing::RowY;

constexpr double kW = 11906, kH = 16838;
constexpr double kLimit = kH - 5500;
const double L = LineAt(10);
// Twelve empty lines, the 24 pt title and one empty line; the headings' y is that rounded.
const double kTop = 12 * L + LineAt(24) + L;
const double kHeadingY = std::nearbyint(kTop);  // 3541.699… → 3542
const double kFirstRow = kHeadingY + L;

double Measure(const std::string& text, double size = 10, bool bold = false) {
  PreviewSurface m;
  m.Font().Size(size);
  m.Font().Bold(bold);
  return m.TextWidth(text);
}

class ChequeList : public ::testing::Test {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    ClassCompanyInfo info;
  }
  void Print(int cheques, int16_t& pageNumber, bool table = true) {
    statement = testing::SampleStatement(0, cheques);
    printer.PrintChecks(page, *statement, false, table, pageNumber);
  }
  static void LimitAt(double limit) { ModuleCompanyInfo::Profile().BottomReserve = kH - limit; }

  PreviewSurface page;
  ClassCheckPrinter printer;
  std::shared_ptr<ClassStatement> statement;
};

TEST_F(ChequeList, HeadingsAndRowsStandOnTheirColumns) {
  int16_t pageNumber = 1;
  Print(2, pageNumber);
  const auto& ops = page.Ops();
  const TextOp title = FindText(ops, "Post-Dated Cheques");
  EXPECT_EQ(title.x, 1000);
  EXPECT_DOUBLE_EQ(title.y, 12 * L);
  EXPECT_EQ(title.size, 24);
  // Centres: 1000 + 750, 2500 + 750, 4000 + 885, 6301 + 750, 7801 + 750, 9301 + 750.
  const std::pair<const char*, double> headings[] = {{"Trans.Date", 1750}, {"Trans.#", 3250},
                                                     {"Bank", 4885},       {"Chq.Date", 7051},
                                                     {"Chq.#", 8551},      {"Amount", 10051}};
  for (const auto& [heading, centre] : headings) {
    const TextOp t = FindText(ops, heading);
    EXPECT_EQ(t.x, centre - std::floor(Measure(heading) / 2)) << heading;
    EXPECT_EQ(t.y, kHeadingY) << heading;
  }
  EXPECT_EQ(testing::Lines(ops)[0], (LineOp{1000, kHeadingY + L, kW - 1000, kHeadingY + L}));

  const ClassCheck c = *testing::Cheque(2);
  const double y = RowY(kFirstRow, 1);  // the second row: one line and 100 below the first
  const std::pair<std::string, double> cells[] = {
      {c.TransactionDate, 2500 - Measure(c.TransactionDate)}, {c.TransactionNum, 2500},
      {c.Bank, 4000}, {c.ChqDate, 7801 - Measure(c.ChqDate)}, {c.ChqNum, 7801},
      {c.Amount, kW - 1000 - Measure(c.Amount)}};
  const auto texts = testing::Texts(ops);
  const std::vector<TextOp> row(texts.begin() + 1 + 6 + 6, texts.begin() + 1 + 6 + 12);
  for (size_t k = 0; k < 6; ++k) {
    EXPECT_EQ(row[k].text, cells[k].first);
    EXPECT_DOUBLE_EQ(row[k].x, cells[k].second) << cells[k].first;
    EXPECT_DOUBLE_EQ(row[k].y, y) << cells[k].first;
  }
}

TEST_F(ChequeList, FrameRunsFromTheTopToTheLimitOnTheColumnEdges) {
  int16_t pageNumber = 1;
  Print(1, pageNumber);
  const auto lines = testing::Lines(page.Ops());
  std::vector<LineOp> frame(lines.begin() + 1, lines.end());  // after the heading rule
  std::vector<LineOp> want = {{1000, kTop, kW - 1000, kTop}};
  for (double x : {1000.0, 2500.0, 4000.0, 6301.0, 7801.0, 9301.0, kW - 1000})
    want.push_back({x, kTop, x, kLimit});
  want.push_back({1000, kLimit, kW - 1000, kLimit});
  EXPECT_EQ(frame, want);

  PreviewSurface bare;
  int16_t again = 1;
  printer.PrintChecks(bare, *statement, false, false, again);
  EXPECT_EQ(testing::Lines(bare.Ops()).size(), 1u);  // the heading rule only
}

TEST_F(ChequeList, BoldTotalStandsOnTheLimit) {
  int16_t pageNumber = 1;
  Print(3, pageNumber);
  const TextOp total = FindText(page.Ops(), "Total:");
  EXPECT_EQ(total.x, kW - 3968);  // Width − Int(Width / 3)
  EXPECT_EQ(total.y, kLimit);
  EXPECT_TRUE(total.bold);
  const TextOp amount = FindText(page.Ops(), "9,999.00 ");
  EXPECT_DOUBLE_EQ(amount.x, kW - 1000 - Measure("9,999.00 ", 10, true));
  EXPECT_EQ(amount.y, kLimit);
  EXPECT_TRUE(amount.bold);
  EXPECT_TRUE(page.Font().Bold());  // left on
  EXPECT_DOUBLE_EQ(page.CurrentY(), kLimit + 3 * L);  // the total's line and two empty ones
}

TEST_F(ChequeList, PageNumberCarriesALeadingBlankAndFollowsTheStartingNumber) {
  int16_t pageNumber = 2;
  Print(10, pageNumber);
  EXPECT_EQ(pageNumber, 2);
  const TextOp number = FindText(page.Ops(), "Page  2");
  EXPECT_DOUBLE_EQ(number.x, kW - 1000 - Measure("Page xx", 8));
  EXPECT_DOUBLE_EQ(number.y, kLimit + 4 * L);
  EXPECT_EQ(number.size, 8);

  PreviewSurface single;
  int16_t first = 1;
  printer.PrintChecks(single, *statement, false, true, first);
  EXPECT_EQ(first, 1);
  for (const TextOp& t : testing::Texts(single.Ops())) EXPECT_NE(t.text.rfind("Page", 0), 0u);
}

TEST_F(ChequeList, RowMovesOnExactlyWhenItWouldReachTheLimit) {
  LimitAt(RowY(kFirstRow, 4) + L);  // four rows fit, the fifth would end on the limit
  int16_t pageNumber = 1;
  Print(5, pageNumber);
  EXPECT_EQ(pageNumber, 2);
  EXPECT_TRUE(HasText(page.Ops(), "Page  1") && HasText(page.Ops(), "Page  2"));
  EXPECT_DOUBLE_EQ(FindText(page.Ops(), "CHQ-4").y, RowY(kFirstRow, 3));
  EXPECT_DOUBLE_EQ(FindText(page.Ops(), "CHQ-5").y, kFirstRow);  // over the first page

  LimitAt(RowY(kFirstRow, 4) + L + 1.0 / 1024);
  PreviewSurface roomier;
  int16_t again = 1;
  printer.PrintChecks(roomier, *statement, false, true, again);
  EXPECT_EQ(again, 1);
  EXPECT_DOUBLE_EQ(FindText(roomier.Ops(), "CHQ-5").y, RowY(kFirstRow, 4));
}

TEST_F(ChequeList, ListWithoutChequesIsHeadingsAndTotal) {
  int16_t pageNumber = 1;
  Print(0, pageNumber);
  std::vector<std::string> texts;
  for (const TextOp& t : testing::Texts(page.Ops())) texts.push_back(t.text);
  EXPECT_EQ(texts, (std::vector<std::string>{"Post-Dated Cheques", "Trans.Date", "Trans.#", "Bank",
                                             "Chq.Date", "Chq.#", "Amount", "Total:", "9,999.00 "}));
  EXPECT_EQ(pageNumber, 1);
}

TEST_F(ChequeList, PagesBreakOnlyOnTheSystemPrinterAndTheDocumentStaysOpen) {
  const int per_page = testing::RowsPerPage(kFirstRow, kLimit);
  const std::string path = testing::TempDir("cheque-list") + "/list.jsonl";
  PrinterSurface& printer_surface = SystemPrinter();
  printer_surface.SetPaper(Paper::A4());
  printer_surface.SetOutput(PrinterOutput::ForPath(path));
  statement = testing::SampleStatement(0, per_page + 1);
  int16_t pageNumber = 1;
  printer.PrintChecks(printer_surface, *statement, false, true, pageNumber);
  EXPECT_EQ(pageNumber, 2);
  EXPECT_TRUE(printer_surface.InDocument());  // no EndDoc: the caller ends the document
  printer_surface.EndDoc();
  const DrawOps ops = testing::ReadOpsFile(path);
  EXPECT_EQ(CountOps(ops, "page"), 1);
  EXPECT_EQ(printer_surface.LastPageCount(), 2);
  EXPECT_TRUE(HasText(ops, "Page  1") && HasText(ops, "Page  2"));

  int16_t again = 1;
  printer.PrintChecks(page, *statement, false, true, again);
  EXPECT_EQ(CountOps(page.Ops(), "page"), 0);
  EXPECT_EQ(CountOps(page.Ops(), "text"), CountOps(ops, "text"));
}

TEST_F(ChequeList, RowTooTallForAnyPageIsPrintedRatherThanLoopingForEver) {
  LimitAt(kFirstRow);  // no row fits under the headings
  int16_t pageNumber = 1;
  Print(3, pageNumber);
  EXPECT_EQ(pageNumber, 3);  // one row a page
  for (const char* text : {"CHQ-1", "CHQ-2", "CHQ-3", "Page  3"}) EXPECT_TRUE(HasText(page.Ops(), text));
}

TEST_F(ChequeList, PageNumberPast16BitsIsAnOverflow) {
  LimitAt(kFirstRow);
  int16_t pageNumber = 32767;
  try {
    Print(2, pageNumber);
    FAIL() << "page 32768 cannot be numbered";
  } catch (const AutomationError& e) {
    EXPECT_EQ(e.Number(), err::kOverflow);
  }
  EXPECT_TRUE(HasText(page.Ops(), "Page  32767"));
}

}  // namespace
}  // namespace quorvel
