// Pagination of invoices: what moves to the next page, page numbers, page breaks on the printer
// and none on a preview, the once-per-printer expenses heading, huge documents.
#include <gtest/gtest.h>

#include <fstream>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "invoices/invoice_printer.hpp"
#include "support/documents_helpers.hpp"

namespace quorvel {
namespace {

using testing::FindText;
using testing::HasText;
using testing::kFoot;
using testing::LineAt;
using testing::PagesOf;

const double L = LineAt(10);
const std::string kShort = "Spare part";  // one wrapped line

std::string ItemName(int i) {
  char name[16];
  std::snprintf(name, sizeof name, "Item %03d", i);
  return name;
}

// An invoice without address blocks holding `count` items "Item 001", "Item 002", ...
ClassInvoice ListInvoice(int count) {
  ClassInvoice invoice = testing::SampleInvoice();
  invoice.hasBilling = invoice.hasShipping = false;
  for (int i = 1; i <= count; ++i) invoice.AddItem(testing::MakeItem(ItemName(i), kShort));
  return invoice;
}

double EstimatedHeight(const std::string& description) {
  PreviewSurface m;
  return m.TextHeight("W") * (m.TextWidth(description) / 4300);
}

// The rule restated: items of one-line descriptions fit on a page while y + their estimated
// height stays within the foot, each taking one line and 100 more; the first always goes.
int ItemsPerPage() {
  const double first_y = testing::CaptionRowWithoutAddresses() + L, h = EstimatedHeight(kShort);
  int n = 0;
  for (double y = first_y; n == 0 || y + h <= kFoot; y += L + 100) ++n;
  return n;
}

// Words until the text is at least `lines` × 4300 wide, for a chosen height estimate.
std::string DescriptionOfWidth(double lines) {
  std::string text = "Assorted";
  while (testing::Measure(text) < lines * 4300) text += " fittings";
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
  void SetUp() override { testing::ResetProfileWithCompany(); }
  std::vector<DrawOps> Pages(ClassInvoice& invoice) {
    PreviewSurface s;
    printer.PrintInvoice(s, invoice, false);
    EXPECT_EQ(testing::CountOps(s.Ops(), "page"), 0);  // a preview gets no NewPage: pages overprint
    return PagesOf(s.Ops(), "Invoice");
  }
  ClassInvoicePrinter printer;
};

TEST_F(InvoicePages, ItemThatDoesNotFitMovesWholeToTheNextPage) {
  ClassInvoice invoice = ListInvoice(ItemsPerPage() - 1);
  invoice.AddItem(testing::MakeItem("Long one", DescriptionOfWidth(6)));  // about six lines
  invoice.AddItem(testing::MakeItem("After it", kShort));
  const std::vector<DrawOps> pages = Pages(invoice);
  ASSERT_EQ(pages.size(), 2u);
  EXPECT_TRUE(HasText(pages[0], "Item 001") && HasText(pages[0], ItemName(ItemsPerPage() - 1)));
  EXPECT_FALSE(HasText(pages[0], "Long one") || HasText(pages[0], "Assorted fittings fittings"));
  testing::ExpectAt(FindText(pages[1], "Long one"), 1000, testing::CaptionRowWithoutAddresses() + L);
  EXPECT_TRUE(HasText(pages[1], "After it"));
  EXPECT_TRUE(HasText(pages[1], "Item #"));  // captions on every page with goods
}

TEST_F(InvoicePages, FitIsJudgedByTheWidthOver4300NotTheWrappedLines) {
  // The second item is estimated at TextHeight("W") × its width / 4300, about 2.6 lines, and
  // wraps into three. The foot is put where width / 4250 lines are left under it (it fits,
  // running past the foot), then where width / 4350 are (it moves).
  const std::string description = DescriptionOfWidth(2.6);
  const double w = testing::Measure(description), h = PreviewSurface().TextHeight("W");
  const double second_y = testing::CaptionRowWithoutAddresses() + L + (L + 100);
  for (const auto& [divisor, pages] : {std::pair{4250.0, 1u}, std::pair{4350.0, 2u}}) {
    ModuleCompanyInfo::Profile().BottomReserve = 16838 - (second_y + h * w / divisor);
    ClassInvoice invoice = ListInvoice(1);
    invoice.AddItem(testing::MakeItem("Estimated", description));
    const std::vector<DrawOps> printed = Pages(invoice);
    ASSERT_EQ(printed.size(), pages) << divisor;
    EXPECT_TRUE(HasText(printed.back(), "Estimated"));
  }
}

TEST_F(InvoicePages, ItemWhoseEstimateEndsOnTheFootStillFits) {
  // Item 13's estimate ends exactly on the foot (its y is past 16838 / 2, so the reserve
  // 16838 − (y + h) gives the foot back exactly); a foot 1/1024 higher moves it.
  const double y13 = testing::CaptionRowWithoutAddresses() + L + 12 * (L + 100);
  for (const auto& [higher, pages] : {std::pair{0.0, 1u}, std::pair{1.0 / 1024, 2u}}) {
    ModuleCompanyInfo::Profile().BottomReserve = 16838 - (y13 + EstimatedHeight(kShort)) + higher;
    ClassInvoice invoice = ListInvoice(13);
    EXPECT_EQ(Pages(invoice).size(), pages) << higher;
  }
}

TEST_F(InvoicePages, OnePageHasNoNumberAndEveryPageOfALongerOneHasOne) {
  ClassInvoice short_invoice = ListInvoice(3);
  EXPECT_TRUE(PageLabels(Pages(short_invoice).at(0)).empty());

  ClassInvoice invoice = ListInvoice(2 * ItemsPerPage() + 1);  // three pages
  const std::vector<DrawOps> pages = Pages(invoice);
  ASSERT_EQ(pages.size(), 3u);
  for (size_t p = 0; p < pages.size(); ++p) {
    const std::string label = "Page " + std::to_string(p + 1);
    ASSERT_EQ(PageLabels(pages[p]), std::vector<std::string>{label});
    const TextOp t = FindText(pages[p], label);
    EXPECT_EQ(t.size, 8);
    // Four blank 10-point lines below the foot, placed by the width of "Page xx".
    testing::ExpectAt(t, 11906 - 1000 - testing::Measure("Page xx", 8), kFoot + 4 * L);
  }
  // The totals come once, on the last page, at the foot.
  EXPECT_TRUE(HasText(pages[2], " Subtotal:"));
  EXPECT_FALSE(HasText(pages[0], " Subtotal:"));
}

TEST_F(InvoicePages, ExpensesHeadingComesOncePerPrinterObject) {
  ClassInvoice invoice = ListInvoice(2);
  invoice.AddExpense(testing::MakeItem("", "Freight", "12.00"));
  invoice.TotalOtherExpenses = "12.00";
  const DrawOps first = Pages(invoice).at(0), second = Pages(invoice).at(0);
  EXPECT_TRUE(HasText(first, "   ---Other Expenses---"));
  EXPECT_FALSE(HasText(second, "   ---Other Expenses---"));
  EXPECT_TRUE(HasText(second, "Freight"));
  EXPECT_TRUE(HasText(second, " Other Expenses:"));  // the totals label stays
  PreviewSurface fresh;
  ClassInvoicePrinter().PrintInvoice(fresh, invoice, false);
  EXPECT_TRUE(HasText(fresh.Ops(), "   ---Other Expenses---"));

  // The heading and first expense sit under the last goods line: a blank line, the heading.
  const TextOp heading = FindText(first, "   ---Other Expenses---");
  EXPECT_NEAR(heading.y, FindText(first, "Item 002").y + L + 100 + L, 1e-6);
  EXPECT_NEAR(FindText(first, "Freight").y, heading.y + L, 1e-6);
}

TEST_F(InvoicePages, FullPageStartsNoHeadingButWalksExpensesOnceItWasPrinted) {
  // The tall last goods line leaves room on page 1 that an expense of no height would fit in.
  ClassInvoice invoice = ListInvoice(ItemsPerPage() - 1);
  invoice.AddItem(testing::MakeItem("Tall one", DescriptionOfWidth(6)));
  invoice.AddExpense(testing::MakeItem("Freight", "", "12.00"));
  const std::vector<DrawOps> first = Pages(invoice);
  ASSERT_EQ(first.size(), 2u);
  EXPECT_FALSE(HasText(first[0], "Freight"));  // a full page starts no heading
  EXPECT_TRUE(HasText(first[1], "Tall one") && HasText(first[1], "Freight"));
  // The second time the heading flag is set: the zero-height expense fits on the full page 1,
  // ahead of the goods line still waiting for page 2.
  const std::vector<DrawOps> later = Pages(invoice);
  ASSERT_EQ(later.size(), 2u);
  EXPECT_TRUE(HasText(later[0], "Freight"));
  EXPECT_TRUE(HasText(later[1], "Tall one"));
  EXPECT_FALSE(HasText(later[1], "Freight"));
}

TEST_F(InvoicePages, LineTallerThanAPageIsPrintedOnItsOwnPageAndTheDocumentEnds) {
  ClassInvoice invoice = ListInvoice(1);
  invoice.AddItem(testing::MakeItem("Huge", DescriptionOfWidth(40)));  // far taller than a page
  invoice.AddItem(testing::MakeItem("Last", kShort));
  invoice.AddExpense(testing::MakeItem("", DescriptionOfWidth(40), "5.00"));
  const std::vector<DrawOps> pages = Pages(invoice);
  ASSERT_EQ(pages.size(), 4u);  // Item 001 | Huge | Last, heading | the huge expense
  EXPECT_TRUE(HasText(pages[0], "Item 001"));
  EXPECT_NEAR(FindText(pages[1], "Huge").y, testing::CaptionRowWithoutAddresses() + L, 1e-6);
  EXPECT_TRUE(HasText(pages[2], "Last") && HasText(pages[2], "   ---Other Expenses---"));
  EXPECT_TRUE(HasText(pages[3], "5.00"));
  EXPECT_EQ(PageLabels(pages[3]), std::vector<std::string>{"Page 4"});
}

TEST_F(InvoicePages, TooManyLinesFailBeforeTheFileIsWritten) {
  // On a preview, LineLimits checks every collection at 32768 lines; here the printer's file.
  ClassInvoice goods;
  const auto item = testing::MakeItem("X", "");
  for (int i = 0; i < 40000; ++i) goods.AddItem(item);
  const std::string path = testing::TempDir("invoice-overflow") + "/never.pdf";
  SystemPrinter().SetOutput(PrinterOutput::ForPath(path));
  EXPECT_EQ(testing::ErrorNumberOf([&] { printer.PrintIt(goods, false); }), err::kOverflow);
  EXPECT_FALSE(std::ifstream(path).good());
}

TEST_F(InvoicePages, ThreeHundredItemsPrintToAPdfInOrder) {
  // Captions at round(19 × 229.98) = 4370, first item at 4599.98, each item 329.98 further;
  // "Spare part" is estimated at about 48 high: (11338 - 4599.98 - 48) / 329.98 = 20.3, so
  // items 0..20 fit: 21 a page, and 300 items take 15 pages.
  ASSERT_EQ(ItemsPerPage(), 21);
  ClassInvoice invoice = ListInvoice(300);
  const std::string path = testing::TempDir("invoice-pdf") + "/invoice.pdf";
  SystemPrinter().SetPaper(Paper::A4());
  SystemPrinter().SetOutput(PrinterOutput::ForPath(path));
  printer.PrintIt(invoice, false);
  EXPECT_EQ(SystemPrinter().LastPageCount(), 15);
  EXPECT_EQ(testing::PdfInfoField(testing::RunCommand("pdfinfo '" + path + "'"), "Pages"), "15");
  const std::string text = testing::RunCommand("pdftotext '" + path + "' -");
  size_t at = 0;
  for (int i = 1; i <= 300; ++i) {
    const size_t found = text.find(ItemName(i), at);
    ASSERT_NE(found, std::string::npos) << ItemName(i) << " missing or out of order";
    at = found + 1;
  }
  EXPECT_NE(text.find("Page 15"), std::string::npos);
  EXPECT_EQ(Pages(invoice).size(), 15u);  // the same pages drawn over each other on a preview
}

}  // namespace
}  // namespace quorvel
