// The C interface's surfaces: the system printer and its output, preview surfaces, and threads
// that each draw their own document.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <thread>

#include "foundation/company_info.hpp"
#include "foundation/printer_surface.hpp"
#include "support/capi_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using namespace testing;

class CSurfaces : public ::testing::Test {
 protected:
  void SetUp() override { ModuleCompanyInfo::Profile() = CompanyProfile{}; }
  void TearDown() override {
    quorvel_printer_end_doc();
    SystemPrinter().SetPaper(Paper::A4());
  }
};

TEST_F(CSurfaces, SystemPrinterTakesOutputAndPaperByName) {
  const std::string dir = TempDir("c-printer");
  quorvel_object* handle = nullptr;
  ASSERT_EQ(quorvel_system_printer(&handle), QUORVEL_OK);
  CObject printer(handle);
  ASSERT_EQ(quorvel_printer_set_output((dir + "/a.pdf").c_str(), "letter"), QUORVEL_OK) << LastError();
  EXPECT_EQ(TakeNumber(Get(printer, "Width")), 12240);
  EXPECT_EQ(TakeNumber(Get(printer, "Height")), 15840);
  ASSERT_EQ(quorvel_printer_set_output((dir + "/a.svg").c_str(), nullptr), QUORVEL_OK);  // paper kept
  EXPECT_EQ(TakeNumber(Get(printer, "Width")), 12240);

  EXPECT_EQ(quorvel_printer_set_output((dir + "/a.doc").c_str(), "a4"), 5);
  EXPECT_NE(LastError().find(".pdf, .png, .svg or .jsonl"), std::string::npos) << LastError();
  EXPECT_EQ(quorvel_printer_set_output((dir + "/missing/a.pdf").c_str(), "a4"), 75);
  EXPECT_EQ(quorvel_printer_set_output((dir + "/a.pdf").c_str(), "folio"), 5);
  EXPECT_EQ(quorvel_printer_set_queue(nullptr, "folio"), 5);
  EXPECT_EQ(quorvel_printer_set_output(nullptr, "a4"), 5);
}

TEST_F(CSurfaces, PreviewsAreMadeToSizeAndRefuseSizesNoPageHas) {
  quorvel_object* handle = nullptr;
  ASSERT_EQ(quorvel_preview_create(4535, 9000, &handle), QUORVEL_OK);
  CObject preview(handle);
  EXPECT_EQ(TakeNumber(Get(preview, "Width")), 4535);
  EXPECT_EQ(TakeNumber(Get(preview, "Height")), 9000);
  for (double bad : {0.0, -1.0, std::nan(""), 32767.0 * 20 + 1}) {
    quorvel_object* none = nullptr;
    EXPECT_EQ(quorvel_preview_create(bad, 9000, &none), 5) << bad;
    EXPECT_EQ(none, nullptr);
  }
  CObject a4 = Create("Quorvel.PreviewSurface");  // by name: an A4 picture
  EXPECT_EQ(TakeNumber(Get(a4, "Height")), 16838);
}

// A cheque list is ended by its host: the document stays open on the printer until then.
TEST_F(CSurfaces, HostEndsTheDocumentThatPrintChecksLeavesOpen) {
  const std::string dir = TempDir("c-enddoc");
  ASSERT_EQ(quorvel_printer_set_output((dir + "/checks.pdf").c_str(), "a4"), QUORVEL_OK) << LastError();
  CObject statement = Create("Quorvel.ClassStatement");
  CObject check = Create("Quorvel.ClassCheck");
  Put(check, "ChqNum", CText("220981"));
  for (int i = 0; i < 150; ++i) Call(statement, "AddChecks", {CObj(check)});  // more than a page holds
  quorvel_object* handle = nullptr;
  ASSERT_EQ(quorvel_system_printer(&handle), QUORVEL_OK);
  CObject printer(handle);
  CObject checks = Create("Quorvel.ClassCheckPrinter");
  std::vector<quorvel_variant> args{CObj(printer), CObj(statement), CBool(false), CBool(true), CInt(1)};
  Call(checks, "PrintChecks", args);
  EXPECT_EQ(args[0].value.object, printer.get());  // the surface handle is still the caller's
  EXPECT_FALSE(std::ifstream(dir + "/checks.pdf").good());  // nothing appears before the end

  EXPECT_EQ(quorvel_printer_set_output((dir + "/other.pdf").c_str(), "a4"), 5);  // not inside a document
  ASSERT_EQ(quorvel_printer_end_doc(), QUORVEL_OK) << LastError();
  int32_t pages = 0;
  EXPECT_EQ(LastResults(&pages), std::vector<std::string>{dir + "/checks.pdf"});
  ASSERT_GE(pages, 2);
  // The page number, by reference, comes back advanced by one for each page after the first.
  ASSERT_EQ(args[4].type, QUORVEL_INTEGER);
  EXPECT_EQ(args[4].value.integer, 1 + pages - 1);
  EXPECT_NE(RunCommand("pdftotext '" + dir + "/checks.pdf' -").find("220981"), std::string::npos);
  EXPECT_EQ(quorvel_printer_end_doc(), QUORVEL_OK);  // nothing open: nothing to do

  // A document the host gives up on leaves no file and no pages behind.
  ASSERT_EQ(quorvel_printer_set_output((dir + "/abandoned.pdf").c_str(), "a4"), QUORVEL_OK);
  Call(checks, "PrintChecks", {CObj(printer), CObj(statement), CBool(false), CBool(true), CInt(1)});
  ASSERT_EQ(quorvel_printer_kill_doc(), QUORVEL_OK);
  EXPECT_FALSE(SystemPrinter().InDocument());
  EXPECT_EQ(quorvel_printer_end_doc(), QUORVEL_OK);
  EXPECT_FALSE(std::filesystem::exists(dir + "/abandoned.pdf"));
  // A document was started since: the results no longer describe a delivered one.
  EXPECT_TRUE(LastResults().empty());
}

// One statement built and drawn entirely through the C interface; returns its ops file.
std::string DrawStatement(const std::string& path, int lines) {
  CObject statement = Create("Quorvel.ClassStatement");
  Put(statement, "printTitle", CText("Statement"));
  Put(statement, "StatementDate", CText("31/03/2024"));
  for (int i = 1; i <= lines; ++i) {
    CObject line = Create("Quorvel.ClassStatementItem");
    const std::string description = "Invoice INV-" + std::to_string(2400 + i);
    Put(line, "Description", CText(description.c_str()));
    Put(line, "Debit", CText("120.00"));
    Call(statement, "AddItem", {CObj(line)});
  }
  CObject preview = Create("Quorvel.PreviewSurface");
  CObject printer = Create("Quorvel.ClassStatementPrinter");
  Call(printer, "PrintStatement", {CObj(preview), CObj(statement), CBool(true)});
  Call(preview, "WriteOps", {CText(path.c_str())});
  return ReadFile(path);
}

// The library keeps no state of its own between documents besides the company profile: two
// threads drawing at once get what one thread gets alone.
TEST_F(CSurfaces, ThreadsEachDrawTheirOwnDocument) {
  CObject company = Create("Quorvel.ClassCompanyInfo");
  std::vector<quorvel_variant> texts(12, CText(""));
  texts[0] = CText("Quillmoor Trading Co.");
  Call(company, "SetCompanyInfo", texts);
  const std::string dir = TempDir("c-threads");
  const std::string alone = DrawStatement(dir + "/alone.jsonl", 300);
  ASSERT_NE(alone.find("INV-2460"), std::string::npos);
  std::string first, second;
  std::thread a([&] { first = DrawStatement(dir + "/a.jsonl", 300); });
  std::thread b([&] { second = DrawStatement(dir + "/b.jsonl", 300); });
  a.join();
  b.join();
  EXPECT_EQ(first, alone);
  EXPECT_EQ(second, alone);
}

}  // namespace
}  // namespace quorvel
