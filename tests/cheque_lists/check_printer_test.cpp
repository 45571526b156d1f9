// Cheque-list layout and paging: headings, rows, frame, page numbers, the total, page ops.
#include <gtest/gtest.h>

#include <cmath>

#include "cheque_lists/check_printer.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "support/documents_helpers.hpp"

namespace quorvel {
namespace {

using testing::CountOps;
using testing::ExpectAt;
using testing::FindText;
using testing::HasText;
using testing::LineAt;
using testing::Measure;
using testing::RowY;

constexpr double kW = 11906, kH = 16838;
constexpr double kLimit = kH - 5500;
const double L = LineAt(10);
// Twelve empty lines, the 24 pt title and one empty line; the headings' y is that rounded.
const double kTop = 12 * L + LineAt(24) + L;
const double kHeadingY = std::nearbyint(kTop);  // 3541.699… → 3542
const double kFirstRow = kHeadingY + L;

class ChequeList : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetProfile(); }
  // Prints a list of `cheques` from `first_page` on the preview; returns the last page's number.
  int16_t Print(int cheques, int16_t first_page = 1, bool table = true) {
    statement = testing::SampleStatement(0, cheques);
    printer.PrintChecks(page, *statement, false, table, first_page);
    return first_page;
  }
  static void LimitAt(double limit) { ModuleCompanyInfo::Profile().BottomReserve = kH - limit; }

  PreviewSurface page;
  ClassCheckPrinter printer;
  std::shared_ptr<ClassStatement> statement;
};

TEST_F(ChequeList, HeadingsAndRowsStandOnTheirColumnsAndOnePageIsNotNumbered) {
  EXPECT_EQ(Print(2), 1);
  const auto& ops = page.Ops();
  for (const TextOp& t : testing::Texts(ops)) EXPECT_NE(t.text.rfind("Page", 0), 0u) << t.text;
  const TextOp title = FindText(ops, "Post-Dated Cheques");
  ExpectAt(title, 1000, 12 * L);
  EXPECT_EQ(title.size, 24);
  // Centres: 1000 + 750, 2500 + 750, 4000 + 885, 6301 + 750, 7801 + 750, 9301 + 750.
  const std::pair<const char*, double> headings[] = {{"Trans.Date", 1750}, {"Trans.#", 3250}, {"Bank", 4885},
                                                     {"Chq.Date", 7051},   {"Chq.#", 8551},   {"Amount", 10051}};
  for (const auto& [heading, centre] : headings)
    ExpectAt(FindText(ops, heading), centre - std::floor(Measure(heading) / 2), kHeadingY);
  EXPECT_EQ(testing::Lines(ops)[0], (LineOp{1000, kHeadingY + L, kW - 1000, kHeadingY + L}));

  const ClassCheck c = *testing::Cheque(2);
  const std::pair<std::string, double> cells[] = {
      {c.TransactionDate, 2500 - Measure(c.TransactionDate)}, {c.TransactionNum, 2500},
      {c.Bank, 4000}, {c.ChqDate, 7801 - Measure(c.ChqDate)}, {c.ChqNum, 7801},
      {c.Amount, kW - 1000 - Measure(c.Amount)}};
  const auto texts = testing::Texts(ops);
  const std::vector<TextOp> row(texts.begin() + 1 + 6 + 6, texts.begin() + 1 + 6 + 12);  // title, headings, row 1
  for (size_t k = 0; k < 6; ++k) {
    EXPECT_EQ(row[k].text, cells[k].first);
    ExpectAt(row[k], cells[k].second, RowY(kFirstRow, 1));  // one line and 100 below the first
  }
}

TEST_F(ChequeList, FrameRunsFromTheTopToTheLimitOnTheColumnEdges) {
  Print(1);
  const auto lines = testing::Lines(page.Ops());
  std::vector<LineOp> want = {{1000, kTop, kW - 1000, kTop}};
  for (double x : {1000.0, 2500.0, 4000.0, 6301.0, 7801.0, 9301.0, kW - 1000}) want.push_back({x, kTop, x, kLimit});
  want.push_back({1000, kLimit, kW - 1000, kLimit});
  EXPECT_EQ(std::vector<LineOp>(lines.begin() + 1, lines.end()), want);  // after the heading rule

  PreviewSurface bare;
  int16_t again = 1;
  printer.PrintChecks(bare, *statement, false, false, again);
  EXPECT_EQ(testing::Lines(bare.Ops()).size(), 1u);  // the heading rule only
}

TEST_F(ChequeList, ListWithoutChequesIsHeadingsAndABoldTotalOnTheLimit) {
  EXPECT_EQ(Print(0), 1);
  std::vector<std::string> texts;
  for (const TextOp& t : testing::Texts(page.Ops())) texts.push_back(t.text);
  EXPECT_EQ(texts, (std::vector<std::string>{"Post-Dated Cheques", "Trans.Date", "Trans.#", "Bank", "Chq.Date",
                                             "Chq.#", "Amount", "Total:", "9,999.00 "}));
  const TextOp total = FindText(page.Ops(), "Total:");
  ExpectAt(total, kW - 3968, kLimit);  // Width − Int(Width / 3)
  EXPECT_TRUE(total.bold);
  const TextOp amount = FindText(page.Ops(), "9,999.00 ");
  ExpectAt(amount, kW - 1000 - Measure("9,999.00 ", 10, true), kLimit);
  EXPECT_TRUE(amount.bold);
  EXPECT_TRUE(page.Font().Bold());  // left on
  EXPECT_DOUBLE_EQ(page.CurrentY(), kLimit + 3 * L);  // the total's line and two empty ones
}

TEST_F(ChequeList, PageNumberCarriesALeadingBlankAndFollowsTheStartingNumber) {
  EXPECT_EQ(Print(10, 2), 2);
  const TextOp number = FindText(page.Ops(), "Page  2");
  ExpectAt(number, kW - 1000 - Measure("Page xx", 8), kLimit + 4 * L);
  EXPECT_EQ(number.size, 8);
}

TEST_F(ChequeList, RowMovesOnExactlyWhenItWouldReachTheLimit) {
  LimitAt(RowY(kFirstRow, 4) + L);  // four rows fit, the fifth would end on the limit
  EXPECT_EQ(Print(5), 2);
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

TEST_F(ChequeList, PagesBreakOnlyOnTheSystemPrinterAndTheDocumentStaysOpen) {
  const std::string path = testing::TempDir("cheque-list") + "/list.jsonl";
  PrinterSurface& printer_surface = SystemPrinter();
  printer_surface.SetPaper(Paper::A4());
  printer_surface.SetOutput(PrinterOutput::ForPath(path));
  statement = testing::SampleStatement(0, testing::RowsPerPage(kFirstRow, kLimit) + 1);
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

TEST_F(ChequeList, RowTooTallForAnyPageIsPrintedRatherThanLoopingForEverUpTo16Bits) {
  LimitAt(kFirstRow);  // no row fits under the headings
  EXPECT_EQ(Print(3), 3);  // one row a page
  for (const char* text : {"CHQ-1", "CHQ-2", "CHQ-3", "Page  3"}) EXPECT_TRUE(HasText(page.Ops(), text));

  PreviewSurface last;
  int16_t pageNumber = 32767;
  EXPECT_EQ(testing::ErrorNumberOf([&] { printer.PrintChecks(last, *statement, false, true, pageNumber); }),
            err::kOverflow);
  EXPECT_TRUE(HasText(last.Ops(), "Page  32767"));  // page 32768 cannot be numbered
}

}  // namespace
}  // namespace quorvel
