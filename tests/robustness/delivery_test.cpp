// Success means delivered: a document whose output was not written fails through PrintIt, the C
// interface and the command alike, and the last results describe only delivered documents.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "robustness/robustness_helpers.hpp"
#include "statements/statement_printer.hpp"
#include "support/capi_helpers.hpp"
#include "support/documents_helpers.hpp"
#include "support/ops_helpers.hpp"
#include "support/output_helpers.hpp"

namespace quorvel::testing {
namespace {

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A statement built and printed through the C interface by names only; the status.
int32_t PrintStatementByNames() {
  CObject statement = Create("Quorvel.ClassStatement");
  Put(statement, "printTitle", CText("Statement"));
  Put(statement, "CustomerShortName", CText("Harrow & Vale Joinery"));
  CObject printer = Create("Quorvel.ClassStatementPrinter");
  std::vector<quorvel_variant> args{CObj(statement), CBool(true)};
  return quorvel_call(printer.get(), "PrintIt", args.data(), 2, nullptr);
}

class Delivery : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetProfileWithCompany();
    file_faults::Clear();
    dir_ = TempDir("delivery");
  }
  void TearDown() override {
    file_faults::Clear();
    SystemPrinter().KillDoc();
    SystemPrinter().SetOutput(PrinterOutput{});
  }
  // A delivered document first, so that stale results would show.
  void PrintEarlierDocument() {
    ASSERT_EQ(quorvel_printer_set_output((dir_ + "/earlier.pdf").c_str(), "a4"), QUORVEL_OK) << LastError();
    ASSERT_EQ(PrintStatementByNames(), QUORVEL_OK) << LastError();
    ASSERT_EQ(LastResults().size(), 1u);
  }
  std::string dir_;
};

TEST_F(Delivery, ADirectoryAsOutputFailsThroughPrintItTheCInterfaceAndTheCommand) {
  const std::string folder = dir_ + "/looks-like.pdf";
  std::filesystem::create_directory(folder);
  SystemPrinter().SetOutput(PrinterOutput::ForPath(folder));
  std::string context;
  EXPECT_EQ(ErrorNumberOf([] { ClassStatementPrinter().PrintIt(*SampleStatement(3, 0), true); }, &context),
            err::kFileError);
  EXPECT_TRUE(Contains(context, "cannot write " + folder + ": " + std::strerror(EISDIR))) << context;
  EXPECT_FALSE(SystemPrinter().Delivered());

  PrintEarlierDocument();
  EXPECT_EQ(quorvel_printer_set_output(folder.c_str(), "a4"), err::kFileError);
  EXPECT_TRUE(Contains(LastError(), folder + ": Is a directory")) << LastError();

  const CommandResult cli = RunQuorvel("print " QUORVEL_SOURCE_DIR "/demo/samples/statement.json -o '" + folder + "'");
  EXPECT_EQ(cli.exit_code, 2);
  EXPECT_TRUE(Contains(cli.output, "error 75")) << cli.output;
  EXPECT_TRUE(Contains(cli.output, folder + ": Is a directory")) << cli.output;
  EXPECT_FALSE(Contains(cli.output, "pages")) << cli.output;
  EXPECT_EQ(Entries(dir_), (std::set<std::string>{"earlier.pdf", "looks-like.pdf"}));
}

TEST_F(Delivery, SvgOnAFullDiskFailsThroughTheCInterfaceAndClearsTheLastResults) {
  // PrintIt on a full disk, for every output kind, is WholeOutput's case; here the C interface.
  PrintEarlierDocument();
  ASSERT_EQ(quorvel_printer_set_output((dir_ + "/out.svg").c_str(), "a4"), QUORVEL_OK);
  file_faults::Inject(FileStep::Write, 1, ENOSPC);
  EXPECT_EQ(PrintStatementByNames(), err::kFileError);
  EXPECT_TRUE(Contains(LastError(), "out.svg: No space left on device")) << LastError();
  int32_t pages = -1;
  EXPECT_TRUE(LastResults(&pages).empty());  // not the earlier document's
  EXPECT_EQ(pages, 0);
  EXPECT_EQ(Entries(dir_), (std::set<std::string>{"earlier.pdf"}));
}

TEST_F(Delivery, SvgOnAFullTmpfsFailsThroughTheCommand) {
  SmallFilesystem disk("delivery-full", 64);
  if (!disk.Mounted()) GTEST_SKIP() << "mounting a tmpfs needs root";
  disk.Fill();
  const CommandResult cli =
      RunQuorvel("print " QUORVEL_SOURCE_DIR "/demo/samples/statement.json -o '" + disk.Dir() + "/out.svg'");
  EXPECT_EQ(cli.exit_code, 2);
  EXPECT_TRUE(Contains(cli.output, disk.Dir() + "/out.svg: No space left on device")) << cli.output;
  EXPECT_EQ(Entries(disk.Dir()), (std::set<std::string>{"filler"}));
}

TEST_F(Delivery, AHostsOwnPrinterSurfaceTellsWhetherTheDocumentWasDelivered) {
  PrinterSurface printer;
  printer.SetOutput(PrinterOutput::ForPath(dir_ + "/own.jsonl"));
  printer.Print("first document");
  printer.EndDoc();
  EXPECT_TRUE(printer.Delivered());
  EXPECT_FALSE(printer.Failure());

  // Failing at the commit, under ignore-errors as every document routine ends.
  file_faults::Inject(FileStep::Rename, 1, EIO);
  printer.Print("second document");
  IgnoreErrors([&] { printer.EndDoc(); });
  EXPECT_FALSE(printer.Delivered());
  ASSERT_TRUE(printer.Failure());
  EXPECT_EQ(printer.Failure()->Number(), err::kFileError);
  EXPECT_TRUE(Contains(printer.Failure()->Context(), std::strerror(EIO))) << printer.Failure()->Context();
  EXPECT_TRUE(printer.LastResults().empty());
  EXPECT_EQ(ReadOpsFile(dir_ + "/own.jsonl").size(), 2u);  // the first document's text and end
}

TEST_F(Delivery, AFailedPageEndsTheDocumentSoNoLaterPartIsPrintedAlone) {
  PrinterSurface printer;
  printer.SetOutput(PrinterOutput::ForPath(dir_ + "/paged.png"));
  printer.Print("page one");
  file_faults::Inject(FileStep::Create, 1, ENOSPC);
  EXPECT_EQ(ErrorNumberOf([&] { printer.NewPage(); }), err::kFileError);
  // A routine that ignores errors draws on: the drawing is refused, not begun as a new document.
  EXPECT_EQ(ErrorNumberOf([&] { printer.Print("page two"); }), err::kFileError);
  EXPECT_EQ(ErrorNumberOf([&] { printer.EndDoc(); }), err::kFileError);
  EXPECT_FALSE(printer.Delivered());
  EXPECT_TRUE(Entries(dir_).empty());
  // The failed document is over: the next one prints.
  printer.Print("next document");
  printer.EndDoc();
  EXPECT_TRUE(printer.Delivered());
  EXPECT_EQ(Entries(dir_), (std::set<std::string>{"paged-1.png"}));
}

}  // namespace
}  // namespace quorvel::testing
