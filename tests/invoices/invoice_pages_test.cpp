// Pagination of invoices: what moves to the next page, page numbers, page breaks on the printer
// and none on a preview, the once-per-printer expenses heading, huge documents.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "invoices/invoice_printer.hpp"
#include "support/invoices_helpers.hpp"

namespace quorvel {
namespace {

using testing::HasText;
using testing::kFoot;
using testing::LineAt;
using testing::PagesOf;

const double L = LineAt(10);
constexpr double kNear = 1e-6;
const std::string kShort = "Spare part";  // one wrapped line

// An invoice without address blocks holding `count` items "Item 001", "Item 002", ...
ClassInvoice ListInvoice(int count, const std::string& description = kShort) {
  ClassInvoice invoice = testing::SampleInvoice();
  invoice.hasBilling = invoice.hasShipping = false;
  for (int i = 1; i <= count; ++i) {
    char name[16];
    std::snprintf(name, sizeof name, "Item %03d", i);
    invoice.AddItem(testing::MakeItem(name, description));
  }
  return invoice;
}

// The rule restated: items of one-line descriptions of estimated height `h` fit on a page while
// y + h stays within the foot, each taking one line and 100 more; the first always goes.
int ItemsPerPage(double h) {
  const double first_y = testing::CaptionRowWithoutAddresses() + L;
  int n = 0;
  for (double y = first_y; n == 0 || y + h <= kFoot; y += L + 100) ++n;
  return n;
}

double EstimatedHeight(const std::string& description) {
  PreviewSurface m;
  return m.TextHeight("W") * (m.TextWidth(description) / 4300);
}

// Words until the text is at least `lines` × 4300 wide, for a chosen height estimate.
std::string DescriptionOfWidth(double lines) {
  PreviewSurface m;
  std::string text = "Assorted";
  while (m.TextWidth(text) < lines * 4300) text += " fittings";
  return text;
}

std::vector<std::string> PageLabels(const DrawOps& page) {
  std::vector<std::string> labels;
  for (const TextOp& t : testing::Texts(page))
    if (t.text.rfind("Page ", 0) == 0) labels.push_back(t.text);
  return labels;
}

class InvoicePages : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetCompany(); }
  ClassInvoicePrinter printer;
};

TEST_F(InvoicePages, ItemThatDoesNotFitMovesWholeToTheNextPage) {
  const int per_page = ItemsPerPage(EstimatedHeight(kShort));
  ClassInvoice invoice = ListInvoice(per_page - 1);
  invoice.AddItem(testing::MakeItem("Long one", DescriptionOfWidth(6)));  // about six lines
  invoice.AddItem(testing::MakeItem("After it", kShort));
  PreviewSurface s;
  printer.PrintInvoice(s, invoice, false);

  const std::vector<DrawOps> pages = PagesOf(s.Ops(), "Invoice");
  ASSERT_EQ(pages.size(), 2u);
  char last_short[16];
  std::snprintf(last_short, sizeof last_short, "Item %03d", per_page - 1);
  EXPECT_TRUE(HasText(pages[0], "Item 001"));
  EXPECT_TRUE(HasText(pages[0], last_short));
  EXPECT_FALSE(HasText(pages[0], "Long one"));
  EXPECT_FALSE(HasText(pages[0], "Assorted fittings fittings"));
  const double first_slot = testing::CaptionRowWithoutAddresses() + L;
  const TextOp moved = testing::FindText(pages[1], "Long one");
  EXPECT_NEAR(moved.y, first_slot, kNear);
  EXPECT_NEAR(moved.x, 1000, kNear);
  EXPECT_TRUE(HasText(pages[1], "After it"));
  EXPECT_TRUE(HasText(pages[1], "Item #"));  // captions on every page with goods
}

TEST_F(InvoicePages, FitIsJudgedByTheWidthEstimateNotTheWrappedLines) {
  // Put the second item where 2.75 lines are left above the foot (the first is short).
  const double room = 2.75 * L;
  ModuleCompanyInfo::Profile().TopMargin = kFoot - room - (L + 100) - L - 19 * L;
  const std::string fits = DescriptionOfWidth(2.5);    // estimate 2.5 lines, wraps into 3
  const std::string moves = DescriptionOfWidth(2.95);  // estimate 2.95 lines, wraps into 3
  ASSERT_LT(EstimatedHeight(fits), room - 1);
  ASSERT_GT(EstimatedHeight(moves), room + 1);

  ClassInvoice invoice = ListInvoice(1);
  invoice.AddItem(testing::MakeItem("Estimated in", fits));
  PreviewSurface s;
  printer.PrintInvoice(s, invoice, false);
  ASSERT_EQ(PagesOf(s.Ops(), "Invoice").size(), 1u);  // printed, its last line past the foot
  double lowest_description = 0;
  for (const TextOp& t : testing::Texts(s.Ops()))
    if (t.x == 2500 && t.text.find("fittings") != std::string::npos) lowest_description = std::max(lowest_description, t.y);
  EXPECT_GT(lowest_description + L, kFoot);

  ClassInvoice other = ListInvoice(1);
  other.AddItem(testing::MakeItem("Estimated out", moves));
  PreviewSurface s2;
  printer.PrintInvoice(s2, other, false);
  const std::vector<DrawOps> pages = PagesOf(s2.Ops(), "Invoice");
  ASSERT_EQ(pages.size(), 2u);
  EXPECT_TRUE(HasText(pages[1], "Estimated out"));
}

TEST_F(InvoicePages, OnePageHasNoNumberAndEveryPageOfALongerOneHasOne) {
  PreviewSurface one;
  ClassInvoice short_invoice = ListInvoice(3);
  printer.PrintInvoice(one, short_invoice, false);
  EXPECT_TRUE(PageLabels(one.Ops()).empty());

  const int per_page = ItemsPerPage(EstimatedHeight(kShort));
  PreviewSurface s;
  ClassInvoice invoice = ListInvoice(2 * per_page + 1);  // three pages
  printer.PrintInvoice(s, invoice, false);
  const std::vector<DrawOps> pages = PagesOf(s.Ops(), "Invoice");
  ASSERT_EQ(pages.size(), 3u);
  PreviewSurface small;
  small.Font().Size(8);
  for (size_t p = 0; p < pages.size(); ++p) {
    const std::string label = "Page " + std::to_string(p + 1);
    ASSERT_EQ(PageLabels(pages[p]), std::vector<std::string>{label});
    const TextOp t = testing::FindText(pages[p], label);
    EXPECT_EQ(t.size, 8);
    EXPECT_NEAR(t.x, 11906 - 1000 - small.TextWidth("Page xx"), kNear);
    EXPECT_NEAR(t.y, kFoot + 4 * L, kNear);  // four blank 10-point lines below the foot
  }
  // The totals come once, on the last page, at the foot.
  EXPECT_TRUE(HasText(pages[2], " Subtotal:"));
  EXPECT_FALSE(HasText(pages[0], " Subtotal:"));
}

TEST_F(InvoicePages, PrinterBreaksPagesAndPreviewDrawsThemOverEachOther) {
  const int per_page = ItemsPerPage(EstimatedHeight(kShort));
  ClassInvoice invoice = ListInvoice(2 * per_page + 1);
  PreviewSurface preview;
  printer.PrintInvoice(preview, invoice, false);
  EXPECT_EQ(testing::CountOps(preview.Ops(), "page"), 0);
  EXPECT_EQ(PagesOf(preview.Ops(), "Invoice").size(), 3u);

  const std::string path = testing::TempDir("invoice-pages") + "/invoice.jsonl";
  SystemPrinter().SetOutput(PrinterOutput::ForPath(path));
  printer.PrintIt(invoice, false);
  EXPECT_EQ(SystemPrinter().LastPageCount(), 3);
  std::ifstream in(path);
  int page_ops = 0, end_ops = 0;
  for (std::string line; std::getline(in, line);) {
    page_ops += line == R"({"op":"page"})";
    end_ops += line == R"({"op":"end"})";
  }
  EXPECT_EQ(page_ops, 2);  // one per page break
  EXPECT_EQ(end_ops, 1);
}

TEST_F(InvoicePages, ExpensesHeadingComesOncePerPrinterObject) {
  ClassInvoice invoice = ListInvoice(2);
  invoice.AddExpense(testing::MakeItem("", "Freight", "12.00"));
  invoice.TotalOtherExpenses = "12.00";
  PreviewSurface first, second, fresh;
  printer.PrintInvoice(first, invoice, false);
  printer.PrintInvoice(second, invoice, false);
  EXPECT_TRUE(HasText(first.Ops(), "   ---Other Expenses---"));
  EXPECT_FALSE(HasText(second.Ops(), "   ---Other Expenses---"));
  EXPECT_TRUE(HasText(second.Ops(), "Freight"));
  EXPECT_TRUE(HasText(second.Ops(), " Other Expenses:"));  // the totals label stays
  ClassInvoicePrinter other;
  other.PrintInvoice(fresh, invoice, false);
  EXPECT_TRUE(HasText(fresh.Ops(), "   ---Other Expenses---"));

  // The heading and first expense sit under the last goods line: a blank line, the heading.
  const TextOp last_goods = testing::FindText(first.Ops(), "Item 002");
  const TextOp heading = testing::FindText(first.Ops(), "   ---Other Expenses---");
  EXPECT_NEAR(heading.y, last_goods.y + L + 100 + L, kNear);
  EXPECT_NEAR(testing::FindText(first.Ops(), "Freight").y, heading.y + L, kNear);
}

TEST_F(InvoicePages, FullPageStartsNoHeadingButWalksExpensesOnceItWasPrinted) {
  // The tall last goods line leaves room on page 1 that an expense of no height would fit in.
  const int per_page = ItemsPerPage(EstimatedHeight(kShort));
  ClassInvoice invoice = ListInvoice(per_page - 1);
  invoice.AddItem(testing::MakeItem("Tall one", DescriptionOfWidth(6)));
  invoice.AddExpense(testing::MakeItem("Freight", "", "12.00"));
  PreviewSurface first, later;
  printer.PrintInvoice(first, invoice, false);
  printer.PrintInvoice(later, invoice, false);  // heading already printed by this printer
  const std::vector<DrawOps> first_pages = PagesOf(first.Ops(), "Invoice");
  ASSERT_EQ(first_pages.size(), 2u);
  EXPECT_FALSE(HasText(first_pages[0], "Freight"));  // a full page starts no heading
  EXPECT_TRUE(HasText(first_pages[1], "Tall one"));
  EXPECT_TRUE(HasText(first_pages[1], "Freight"));
  // The second time the heading flag is set: the zero-height expense fits on the full page 1,
  // ahead of the goods line still waiting for page 2.
  const std::vector<DrawOps> later_pages = PagesOf(later.Ops(), "Invoice");
  ASSERT_EQ(later_pages.size(), 2u);
  EXPECT_TRUE(HasText(later_pages[0], "Freight"));
  EXPECT_TRUE(HasText(later_pages[1], "Tall one"));
  EXPECT_FALSE(HasText(later_pages[1], "Freight"));
}

TEST_F(InvoicePages, LineTallerThanAPageIsPrintedOnItsOwnPageAndTheDocumentEnds) {
  ClassInvoice invoice = ListInvoice(1);
  invoice.AddItem(testing::MakeItem("Huge", DescriptionOfWidth(40)));  // far taller than a page
  invoice.AddItem(testing::MakeItem("Last", kShort));
  invoice.AddExpense(testing::MakeItem("", DescriptionOfWidth(40), "5.00"));
  PreviewSurface s;
  printer.PrintInvoice(s, invoice, false);
  const std::vector<DrawOps> pages = PagesOf(s.Ops(), "Invoice");
  ASSERT_EQ(pages.size(), 4u);  // Item 001 | Huge | Last, heading | the huge expense
  EXPECT_TRUE(HasText(pages[0], "Item 001"));
  EXPECT_NEAR(testing::FindText(pages[1], "Huge").y, testing::CaptionRowWithoutAddresses() + L, kNear);
  EXPECT_TRUE(HasText(pages[2], "Last"));
  EXPECT_TRUE(HasText(pages[2], "   ---Other Expenses---"));
  EXPECT_TRUE(HasText(pages[3], "5.00"));
  EXPECT_EQ(PageLabels(pages[3]), std::vector<std::string>{"Page 4"});
}

TEST_F(InvoicePages, TooManyLinesFailBeforeAnythingIsDrawn) {
  ClassInvoice goods;
  ClassInvoice expenses;
  const auto item = testing::MakeItem("X", "");
  for (int i = 0; i < 40000; ++i) {
    goods.AddItem(item);
    expenses.AddExpense(item);
  }
  for (ClassInvoice* invoice : {&goods, &expenses}) {
    PreviewSurface s;
    try {
      printer.PrintInvoice(s, *invoice, false);
      ADD_FAILURE() << "40,000 lines must overflow the 16-bit count";
    } catch (const AutomationError& e) {
      EXPECT_EQ(e.Number(), err::kOverflow);
    }
    EXPECT_TRUE(s.Ops().empty());
  }
  const std::string path = testing::TempDir("invoice-overflow") + "/never.pdf";
  SystemPrinter().SetOutput(PrinterOutput::ForPath(path));
  EXPECT_THROW(printer.PrintIt(goods, false), AutomationError);
  EXPECT_FALSE(std::ifstream(path).good());
}

TEST_F(InvoicePages, ThreeHundredItemsPrintToAPdfInOrder) {
  const int per_page = ItemsPerPage(EstimatedHeight(kShort));
  // Captions at round(19 × 229.98) = 4370, first item at 4599.98, each item 329.98 further;
  // "Spare part" is estimated at about 48 high: (11338 - 4599.98 - 48) / 329.98 = 20.3, so
  // items 0..20 fit: 21 a page, and 300 items take 15 pages.
  ASSERT_EQ(per_page, 21);
  const int expected_pages = (300 + per_page - 1) / per_page;
  ClassInvoice invoice = ListInvoice(300);
  const std::string path = testing::TempDir("invoice-pdf") + "/invoice.pdf";
  SystemPrinter().SetOutput(PrinterOutput::ForPath(path));
  printer.PrintIt(invoice, false);
  EXPECT_EQ(SystemPrinter().LastPageCount(), expected_pages);
  const std::string info = testing::RunCommand("pdfinfo '" + path + "'");
  const size_t pages_at = info.find("Pages:");
  ASSERT_NE(pages_at, std::string::npos) << info;
  EXPECT_EQ(std::stoi(info.substr(pages_at + 6)), expected_pages);
  const std::string text = testing::RunCommand("pdftotext '" + path + "' -");
  size_t at = 0;
  for (int i = 1; i <= 300; ++i) {
    char name[16];
    std::snprintf(name, sizeof name, "Item %03d", i);
    const size_t found = text.find(name, at);
    ASSERT_NE(found, std::string::npos) << name << " missing or out of order";
    at = found + 1;
  }
  EXPECT_NE(text.find("Page " + std::to_string(expected_pages)), std::string::npos);
}

}  // namespace
}  // namespace quorvel
