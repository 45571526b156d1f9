// Statement pagination: the page-full rule, page numbers, page ops, the cheque list, and a PDF.
#include <gtest/gtest.h>

#include <cmath>
#include <regex>

#include "foundation/company_info.hpp"
#include "foundation/printer_surface.hpp"
#include "statements/statement_printer.hpp"
#include "support/documents_helpers.hpp"

namespace quorvel {
namespace {

using testing::CountOps;
using testing::FindText;
using testing::HasText;
using testing::LineAt;
using testing::RowY;

constexpr double kH = 16838;
const double L = LineAt(10);
// Twelve empty lines, the date label, value and an empty line, two empty lines, the labels.
const double kFirstRow = 12 * L + 3 * L + 2 * L + L;

class StatementPaging : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::ResetProfile();
    dir = testing::TempDir("statement-paging");
    SystemPrinter().SetPaper(Paper::A4());
  }
  // Prints on the system printer into an ops file and reads the ops back, page ops included.
  DrawOps PrintToOps(ClassStatement& s) {
    SystemPrinter().SetOutput(PrinterOutput::ForPath(dir + "/statement.jsonl"));
    printer.PrintIt(s, false);
    return testing::ReadOpsFile(dir + "/statement.jsonl");
  }
  DrawOps Preview(ClassStatement& s) {
    PreviewSurface page;
    printer.PrintStatement(page, s, false);
    EXPECT_EQ(CountOps(page.Ops(), "page"), 0);  // a preview gets no NewPage: pages overprint
    return page.Ops();
  }
  // The reserve that puts the page limit at `limit`.
  static void LimitAt(double limit) { ModuleCompanyInfo::Profile().BottomReserve = kH - limit; }

  std::string dir;
  ClassStatementPrinter printer;
};

TEST_F(StatementPaging, LineMovesOnExactlyWhenItWouldReachTheLimit) {
  auto s = testing::SampleStatement(6, 0);
  LimitAt(RowY(kFirstRow, 5) + L);  // the sixth line would end exactly on the limit
  DrawOps ops = Preview(*s);
  EXPECT_TRUE(HasText(ops, "Page 2"));
  EXPECT_DOUBLE_EQ(FindText(ops, " Line 5").y, RowY(kFirstRow, 4));
  EXPECT_DOUBLE_EQ(FindText(ops, " Line 6").y, kFirstRow);  // first line of page 2, over page 1

  LimitAt(RowY(kFirstRow, 5) + L + 1.0 / 1024);  // a hair lower: the sixth line still fits
  ops = Preview(*s);
  EXPECT_FALSE(HasText(ops, "Page 2"));
  EXPECT_DOUBLE_EQ(FindText(ops, " Line 6").y, RowY(kFirstRow, 5));
}

TEST_F(StatementPaging, OnePageStatementsEndOnceWithoutAPageOpOrANumber) {
  // Without lines the statement still prints its head, frame, totals, aging and notes.
  auto bare = testing::SampleStatement(0, 0);
  auto full = testing::SampleStatement(8, 0);
  bare->CustomerNote1 = full->CustomerNote1 = "Nothing due this month";
  LimitAt(RowY(kFirstRow, 8) + L);  // exactly eight lines fit, and the full one has eight
  const DrawOps none = PrintToOps(*bare);
  for (const char* text : {"Statement", "Balance", "Total:", "Amount Due", "Nothing due this month"})
    EXPECT_TRUE(HasText(none, text)) << text;
  EXPECT_EQ(CountOps(none, "box"), 3);  // date, totals and aging boxes: the frame is there
  EXPECT_EQ(CountOps(Preview(*bare), "text"), CountOps(none, "text"));
  const DrawOps ops = PrintToOps(*full);
  EXPECT_EQ(SystemPrinter().LastPageCount(), 1);
  for (const DrawOps* printed : {&none, &ops}) {
    EXPECT_EQ(CountOps(*printed, "page"), 0);
    EXPECT_EQ(CountOps(*printed, "end"), 1);
    EXPECT_FALSE(HasText(*printed, "Page 1"));
  }
  // The eight lines' cells are all that a statement without lines lacks: no empty page follows.
  EXPECT_EQ(CountOps(ops, "text") - CountOps(none, "text"), 8 * 5);
}

TEST_F(StatementPaging, PagesBreakOnlyOnThePrinterAndTheChequeListFollowsWithTheNextNumber) {
  const int per_page = testing::RowsPerPage(kFirstRow, testing::kFoot);
  auto s = testing::SampleStatement(per_page + 1, 3);
  s->PrintPDCChecks = true;
  const DrawOps ops = PrintToOps(*s);
  EXPECT_EQ(CountOps(ops, "page"), 2);  // one break in the ledger, one before the list
  EXPECT_EQ(CountOps(ops, "end"), 1);
  EXPECT_EQ(SystemPrinter().LastPageCount(), 3);
  EXPECT_TRUE(HasText(ops, "Page 1") && HasText(ops, "Page 2"));
  // The list's ops come after the last page op, its number with a leading blank.
  size_t last_page = 0;
  for (size_t i = 0; i < ops.size(); ++i)
    if (std::holds_alternative<PageOp>(ops[i])) last_page = i;
  const DrawOps list(ops.begin() + static_cast<std::ptrdiff_t>(last_page), ops.end());
  for (const char* text : {"Post-Dated Cheques", "Page  3", "CHQ-3", "9,999.00 "})
    EXPECT_TRUE(HasText(list, text)) << text;
  EXPECT_FALSE(HasText(list, " Line 1"));

  // A preview draws the same texts, later pages over the first, the header on each.
  const DrawOps preview = Preview(*s);
  EXPECT_DOUBLE_EQ(FindText(preview, " Line " + std::to_string(per_page + 1)).y, kFirstRow);
  EXPECT_EQ(CountOps(preview, "text"), CountOps(ops, "text"));
  EXPECT_EQ(testing::AllTexts(preview, "Statement").size(), 2u);

  s->PrintPDCChecks = false;
  EXPECT_FALSE(HasText(PrintToOps(*s), "Post-Dated Cheques"));
}

TEST_F(StatementPaging, LineTooTallForAnyPageIsPrintedRatherThanLoopingForEver) {
  auto s = testing::SampleStatement(3, 0);
  LimitAt(kFirstRow);  // not even the first line fits under the labels
  const DrawOps ops = PrintToOps(*s);
  EXPECT_EQ(CountOps(ops, "page"), 2);  // one line a page
  for (const char* text : {" Line 1", " Line 2", " Line 3", "Page 3"}) EXPECT_TRUE(HasText(ops, text));
  EXPECT_FALSE(HasText(ops, "Page 4"));
}

TEST_F(StatementPaging, LongStatementWithChequesPrintsToPdf) {
  ModuleCompanyInfo::Profile().CompanyName = "Quillmoor Trading";
  auto s = testing::SampleStatement(200, 40);
  s->PrintPDCChecks = true;
  // Letterhead with only a name: two empty lines, the name at 20 pt, one empty line under the rule.
  const double letterhead = 3 * L + LineAt(20);
  const int ledger_rows = testing::RowsPerPage(letterhead + 3 * L + 2 * L + L, testing::kFoot);
  // The list's headings sit on the head's y rounded to a whole number.
  const int list_rows = testing::RowsPerPage(std::nearbyint(letterhead + LineAt(24) + L) + L, testing::kFoot);
  const int ledger_pages = (200 + ledger_rows - 1) / ledger_rows;
  const int pages_total = ledger_pages + (40 + list_rows - 1) / list_rows;
  ASSERT_GT(pages_total - ledger_pages, 1);
  ASSERT_GT(ledger_pages, 1);

  SystemPrinter().SetOutput(PrinterOutput::ForPath(dir + "/statement.pdf"));
  printer.PrintIt(*s, true);
  EXPECT_EQ(SystemPrinter().LastPageCount(), pages_total);
  EXPECT_EQ(testing::PdfInfoField(testing::RunCommand("pdfinfo " + dir + "/statement.pdf"), "Pages"),
            std::to_string(pages_total));

  const std::string text = testing::RunCommand("pdftotext -layout " + dir + "/statement.pdf -");
  std::vector<std::string> pages;
  for (size_t start = 0, ff; (ff = text.find('\f', start)) != std::string::npos; start = ff + 1)
    pages.push_back(text.substr(start, ff - start));
  ASSERT_EQ(static_cast<int>(pages.size()), pages_total);
  for (int p = 1; p <= pages_total; ++p) {
    const std::string& page = pages[static_cast<size_t>(p - 1)];
    EXPECT_TRUE(std::regex_search(page, std::regex("Page +" + std::to_string(p) + "\\b"))) << p;
    EXPECT_NE(page.find("Quillmoor Trading"), std::string::npos) << p;
  }
  EXPECT_NE(pages[0].find("Line 1 "), std::string::npos);
  EXPECT_NE(pages[1].find("Line " + std::to_string(ledger_rows + 1) + " "), std::string::npos);
  const std::string& last_ledger = pages[static_cast<size_t>(ledger_pages - 1)];
  EXPECT_NE(last_ledger.find("Line 200"), std::string::npos);
  EXPECT_NE(last_ledger.find("Amount Due"), std::string::npos);
  EXPECT_EQ(pages[0].find("Amount Due"), std::string::npos);  // aging texts only on the last page
  EXPECT_NE(pages[static_cast<size_t>(ledger_pages)].find("Post-Dated Cheques"), std::string::npos);
  EXPECT_NE(pages.back().find("CHQ-40"), std::string::npos);
  EXPECT_NE(pages.back().find("9,999.00"), std::string::npos);
}

}  // namespace
}  // namespace quorvel
