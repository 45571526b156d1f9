// The printer surface: real PDF/PNG/SVG/ops files, whole or not at all.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "foundation/atomic_file.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

namespace fs = std::filesystem;
using testing::RunCommand;

void DrawLetterheadPages(Surface& s, int pages) {
  for (int page = 1; page <= pages; ++page) {
    StartDocumentHead(s, true);
    s.CurrentX(1000);
    s.Print("Body of page " + std::to_string(page));
    if (page < pages) s.NewPage();
  }
}

class PrinterSurfaceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    ClassCompanyInfo().SetCompanyInfo("Lantern & Pine Trading", "12 Mill Lane", "", "", "Brookfield",
                                      "Eastmark", "555-0199", "", "", "", "$", "Dollar");
    dir_ = testing::TempDir(::testing::UnitTest::GetInstance()->current_test_info()->name());
    printer().SetPaper(Paper::A4());
  }
  PrinterSurface& printer() { return SystemPrinter(); }
  void PrintTo(const std::string& path, int pages) {
    auto output = PrinterOutput::ForPath(path);
    output.pdf_creation_date = "2026-01-02T03:04:05";
    printer().SetOutput(output);
    DrawLetterheadPages(printer(), pages);
    printer().EndDoc();
  }
  std::string dir_;
};

TEST_F(PrinterSurfaceTest, PdfHoldsTheLetterheadOnEveryPage) {
  PrintTo(dir_ + "/letter.pdf", 2);
  EXPECT_EQ(printer().LastPageCount(), 2);
  const std::string info = RunCommand("pdfinfo " + dir_ + "/letter.pdf");
  EXPECT_NE(info.find("Pages:           2\n"), std::string::npos) << info;
  EXPECT_NE(info.find("595.3 x 841.9 pts (A4)"), std::string::npos) << info;  // 11906 × 16838 twips
  const std::string text = RunCommand("pdftotext -layout " + dir_ + "/letter.pdf -");
  EXPECT_NE(text.find("Lantern & Pine Trading"), std::string::npos);
  EXPECT_NE(text.find("Brookfield, Eastmark"), std::string::npos);
  EXPECT_NE(text.find("Body of page 2"), std::string::npos);
}

TEST_F(PrinterSurfaceTest, PngPerPageSvgAndOpsWithPageMarks) {
  PrintTo(dir_ + "/page.png", 2);
  EXPECT_EQ(RunCommand("file -b " + dir_ + "/page-1.png").substr(0, 9), "PNG image");
  EXPECT_TRUE(fs::exists(dir_ + "/page-2.png"));
  EXPECT_FALSE(fs::exists(dir_ + "/page-3.png"));
  PrintTo(dir_ + "/doc.svg", 1);
  EXPECT_NE(RunCommand("head -c 200 " + dir_ + "/doc.svg").find("<svg"), std::string::npos);
  PrintTo(dir_ + "/doc.jsonl", 2);
  std::ifstream in(dir_ + "/doc.jsonl");
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), R"({"op":"end"})");
  EXPECT_EQ(std::count(lines.begin(), lines.end(), R"({"op":"page"})"), 1);
  const TextOp name = std::get<TextOp>(OpFromJson(lines[0]));
  EXPECT_EQ(name.text, "Lantern & Pine Trading");
  EXPECT_NEAR(name.y, 2 * testing::LineAt(10), 0.005);  // the ops format keeps two decimals
}

TEST_F(PrinterSurfaceTest, NothingIsWrittenUntilEndDocAndKillDocLeavesNoFile) {
  printer().SetOutput(PrinterOutput::ForPath(dir_ + "/killed.pdf"));
  DrawLetterheadPages(printer(), 2);
  EXPECT_TRUE(printer().InDocument());
  EXPECT_FALSE(fs::exists(dir_ + "/killed.pdf"));
  printer().KillDoc();
  EXPECT_TRUE(fs::is_empty(dir_));  // no temporary file left either
  // A routine that fails half-way through leaves nothing behind.
  printer().SetOutput(PrinterOutput::ForPath(dir_ + "/failed.pdf"));
  EXPECT_THROW(PrintOnSystemPrinter([](Surface& p) {
                 p.Print("first line");
                 p.NewPage();
                 Raise(err::kOverflow, "test");
               }),
               AutomationError);
  EXPECT_TRUE(fs::is_empty(dir_));
  EXPECT_FALSE(printer().InDocument());
}

TEST_F(PrinterSurfaceTest, BadPathsAreClearErrors) {
  printer().SetOutput(PrinterOutput::ForPath("/nonexistent-dir/x.pdf"));
  try {
    printer().Print("x");
    FAIL();
  } catch (const AutomationError& e) {
    EXPECT_EQ(e.Number(), err::kFileError);
    EXPECT_NE(e.Context().find("/nonexistent-dir/x.pdf"), std::string::npos);
  }
  EXPECT_THROW(PrinterOutput::ForPath(dir_ + "/x.docx"), AutomationError);
  EXPECT_THROW(CheckWritable("/proc/x.pdf"), AutomationError);
}

TEST_F(PrinterSurfaceTest, RollPaperIsCutToWhatWasPrinted) {
  printer().SetPaper(Paper::Roll80());
  printer().SetOutput(PrinterOutput::ForPath(dir_ + "/slip.pdf"));
  printer().Font().Size(8);
  for (int i = 0; i < 10; ++i) printer().Print("line");
  printer().EndDoc();
  // Ten lines at 8 pt end at 10 × 183.98 = 1839.84 twips = 91.99 pt; the width is 4535 twips.
  const std::string info = RunCommand("pdfinfo " + dir_ + "/slip.pdf");
  EXPECT_NE(info.find("226.75 x 91.9922 pts"), std::string::npos) << info;
  printer().SetPaper(Paper::A4());
}

}  // namespace
}  // namespace quorvel
