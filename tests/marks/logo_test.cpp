// The company logo: read when set (a bad file is an error then), drawn on every page's
// letterhead at the right margin without moving anything of the letterhead.
#include <gtest/gtest.h>

#include <cairo.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "invoices/invoice_printer.hpp"
#include "support/documents_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

// A 300 × 100 PNG: the logo's proportions are 3:1.
std::string MakeLogoPng(const std::string& dir) {
  const std::string path = dir + "/logo.png";
  cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 300, 100);
  cairo_t* cr = cairo_create(image);
  cairo_set_source_rgb(cr, 0.1, 0.3, 0.7);
  cairo_paint(cr);
  cairo_destroy(cr);
  EXPECT_EQ(cairo_surface_write_to_png(image, path.c_str()), CAIRO_STATUS_SUCCESS);
  cairo_surface_destroy(image);
  return path;
}

std::vector<ImageOp> Images(const DrawOps& ops) {
  std::vector<ImageOp> images;
  for (const DrawOp& op : ops)
    if (auto* image = std::get_if<ImageOp>(&op)) images.push_back(*image);
  return images;
}

// An invoice of three pages or more.
ClassInvoice LongInvoice() {
  ClassInvoice invoice = SampleInvoice();
  for (int i = 0; i < 70; ++i) invoice.AddItem(MakeItem("ITEM-" + std::to_string(i), "Goods"));
  return invoice;
}

// Prints through the system printer to `path`; the pages printed.
int PrintTo(ClassInvoice invoice, const std::string& path) {
  SystemPrinter().SetOutput(PrinterOutput::ForPath(path));
  ClassInvoicePrinter().PrintIt(invoice, true);
  return SystemPrinter().LastPageCount();
}

class Logo : public ::testing::Test {
 protected:
  void SetUp() override { ResetProfileWithCompany(); }
  void TearDown() override { ClassCompanyInfo().SetLogo(""); }
};

TEST_F(Logo, StandsAtTheRightMarginFromTheNameDownToTheRuleOnEveryPageOfOpsAndPdf) {
  const std::string dir = TempDir("logo");
  ClassCompanyInfo().SetLogo(MakeLogoPng(dir));
  const int pages = PrintTo(LongInvoice(), dir + "/invoice.jsonl");
  const DrawOps ops = ReadOpsFile(dir + "/invoice.jsonl");
  ASSERT_GE(pages, 3);

  const std::vector<ImageOp> logos = Images(ops);
  ASSERT_EQ(logos.size(), static_cast<size_t>(pages));
  // Letterhead at TopMargin 0: two blank lines at 10 pt, then the name at 20 pt; the rule lies
  // under the name and the company's two address lines.
  const double name_top = 2 * LineAt(10);
  const double rule_y = name_top + LineAt(20) + 2 * LineAt(10);
  // The ops file keeps twips to two decimals.
  constexpr double kRounding = 0.006;
  for (const ImageOp& logo : logos) {
    EXPECT_NEAR(logo.y1, name_top, kRounding);
    EXPECT_NEAR(logo.y2, rule_y - 60, kRounding);
    EXPECT_NEAR(logo.x2, kPageWidth - 1000, kRounding);
    EXPECT_NEAR(logo.x2 - logo.x1, 3 * (logo.y2 - logo.y1), 4 * kRounding);
  }
  int rules_under_letterhead = 0;
  for (const LineOp& line : Lines(ops))
    if (std::abs(line.y1 - rule_y) < kRounding && line.x1 == 1000) ++rules_under_letterhead;
  EXPECT_EQ(rules_under_letterhead, pages);

  // In the PDF the picture is one image object that every page draws, upright where its op says.
  ASSERT_EQ(PrintTo(LongInvoice(), dir + "/invoice.pdf"), pages);

  // pdfimages -list: a row per drawing, "page num type width height … object generation …"
  std::istringstream rows(RunCommand("pdfimages -list " + dir + "/invoice.pdf"));
  std::set<std::string> objects;
  int drawn = 0;
  for (std::string row; std::getline(rows, row);) {
    std::istringstream cells(row);
    std::vector<std::string> cell{std::istream_iterator<std::string>(cells), {}};
    if (cell.size() < 12 || cell[2] != "image") continue;
    ++drawn;
    EXPECT_EQ(cell[3] + "x" + cell[4], "300x100") << row;
    objects.insert(cell[10]);
  }
  EXPECT_EQ(drawn, pages);
  EXPECT_EQ(objects.size(), 1u);

  // The logo's middle on page 2, from its op, is the logo's blue in poppler's rendering.
  const ImageOp& logo = logos[1];
  RunCommand("pdftoppm -r 72 -f 2 -l 2 -png -singlefile " + dir + "/invoice.pdf " + dir + "/page2");
  cairo_surface_t* page = cairo_image_surface_create_from_png((dir + "/page2.png").c_str());
  ASSERT_EQ(cairo_surface_status(page), CAIRO_STATUS_SUCCESS);
  const int x = static_cast<int>((logo.x1 + logo.x2) / 2 / 20), y = static_cast<int>((logo.y1 + logo.y2) / 2 / 20);
  const uint8_t* pixel = cairo_image_surface_get_data(page) + y * cairo_image_surface_get_stride(page) + x * 4;
  EXPECT_NEAR(pixel[0], 0.7 * 255, 3);  // blue, green, red in memory order
  EXPECT_NEAR(pixel[1], 0.3 * 255, 3);
  EXPECT_NEAR(pixel[2], 0.1 * 255, 3);
  cairo_surface_destroy(page);
}

TEST_F(Logo, AMissingOrBrokenFileIsAnErrorWhenSetNamingItAndNoImageIsDrawn) {
  const std::string dir = TempDir("logo-bad");
  std::string context;
  EXPECT_EQ(ErrorNumberOf([] { ClassCompanyInfo().SetLogo("/nonexistent/logo.png"); }, &context), 75);
  EXPECT_NE(context.find("/nonexistent/logo.png"), std::string::npos) << context;
  std::ofstream(dir + "/fake.png") << "\x89PNG\r\n\x1a\n but not really";
  EXPECT_EQ(ErrorNumberOf([&] { ClassCompanyInfo().SetLogo(dir + "/fake.png"); }, &context), 75);
  EXPECT_NE(context.find("fake.png"), std::string::npos) << context;
  std::ofstream(dir + "/notes.txt") << "plain text";
  EXPECT_EQ(ErrorNumberOf([&] { ClassCompanyInfo().SetLogo(dir + "/notes.txt"); }, &context), 75);
  EXPECT_FALSE(ModuleCompanyInfo::Profile().Logo);
  // Without a logo the letterhead draws no image at all.
  PreviewSurface preview;
  ClassInvoice invoice = SampleInvoice();
  ClassInvoicePrinter().PrintInvoice(preview, invoice, true);
  EXPECT_TRUE(Images(preview.Ops()).empty());
}

}  // namespace
}  // namespace quorvel::testing
