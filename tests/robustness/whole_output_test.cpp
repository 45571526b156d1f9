// Every output kind whole or not at all: a failure of the disk at the start, in the middle or at
// the commit (through the writer's fault seam, and on a real full tmpfs when run as root) leaves
// an error naming the path and the reason, no partial or temporary file, and the earlier file.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "invoices/invoice_printer.hpp"
#include "robustness/robustness_helpers.hpp"
#include "support/documents_helpers.hpp"
#include "support/ops_helpers.hpp"
#include "support/output_helpers.hpp"

namespace quorvel::testing {
namespace {

// An invoice of `items` lines numbered `number`: about 30 lines a page.
ClassInvoice InvoiceOf(int items, const std::string& number) {
  ClassInvoice invoice = SampleInvoice();
  invoice.InvoiceNumber = number;
  for (int i = 1; i <= items; ++i) invoice.AddItem(MakeItem("IT-" + std::to_string(i), "Brass hinge, pair"));
  return invoice;
}

void PrintInvoiceTo(const std::string& path, int items, const std::string& number) {
  SystemPrinter().SetOutput(PrinterOutput::ForPath(path));
  ClassInvoice invoice = InvoiceOf(items, number);
  ClassInvoicePrinter().PrintIt(invoice, true);
}

class WholeOutput : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    ResetProfileWithCompany();
    file_faults::Clear();
  }
  void TearDown() override {
    file_faults::Clear();
    SystemPrinter().KillDoc();
    SystemPrinter().SetOutput(PrinterOutput{});
  }
  std::string OutputIn(const std::string& dir) const { return dir + "/out." + GetParam(); }
};

struct Fault {
  FileStep step;
  int nth;
  const char* when;
};

// The failing print's error names the output and the system's reason; nothing it began stays.
void ExpectRefusedWhole(const std::string& path, int items, const std::map<std::string, std::string>& before,
                        const std::string& dir, const std::string& when) {
  std::string context;
  EXPECT_EQ(ErrorNumberOf([&] { PrintInvoiceTo(path, items, "INV-NEW"); }, &context), err::kFileError) << when;
  const std::string stem = path.substr(0, path.rfind('.'));
  EXPECT_NE(context.find("cannot write " + stem), std::string::npos) << when << ": " << context;
  EXPECT_NE(context.find(std::strerror(ENOSPC)), std::string::npos) << when << ": " << context;
  EXPECT_EQ(Snapshot(dir), before) << when;
  EXPECT_FALSE(SystemPrinter().Delivered());
  EXPECT_TRUE(SystemPrinter().LastResults().empty()) << when;
  EXPECT_FALSE(SystemPrinter().InDocument());
}

TEST_P(WholeOutput, AFailingDiskAtAnyStepLeavesTheEarlierOutputExactly) {
  const std::string dir = TempDir("whole-" + GetParam());
  const std::string path = OutputIn(dir);
  PrintInvoiceTo(path, 70, "INV-OLD");  // four pages: four PNG files
  ASSERT_TRUE(SystemPrinter().Delivered());
  const int writes = file_faults::Calls(FileStep::Write), files = file_faults::Calls(FileStep::Rename);
  ASSERT_GE(writes, 1);
  const auto before = Snapshot(dir);
  ASSERT_EQ(before.size(), GetParam() == "png" ? 4u : 1u);

  const Fault faults[] = {
      {FileStep::Create, 1, "creating the file"},
      {FileStep::Write, 1, "the first write"},
      {FileStep::Write, writes / 2 + 1, "a write in the middle"},
      {FileStep::Sync, files, "fsync at the commit"},
      {FileStep::Close, files, "close at the commit"},
      {FileStep::Rename, files, "the rename"},
      {FileStep::Rename, 2, "the second file's rename"},
  };
  for (const Fault& fault : faults) {
    if (fault.nth > files && fault.step == FileStep::Rename) continue;  // one file: no second rename
    file_faults::Clear();
    file_faults::Inject(fault.step, fault.nth, ENOSPC);
    ExpectRefusedWhole(path, 70, before, dir, fault.when);
  }
  // With the disk healthy again the same print replaces the earlier output.
  file_faults::Clear();
  PrintInvoiceTo(path, 70, "INV-NEW");
  EXPECT_TRUE(SystemPrinter().Delivered());
  EXPECT_NE(Snapshot(dir), before);
  EXPECT_EQ(TemporaryFiles(dir), 0);
}

TEST_P(WholeOutput, AFullTmpfsAtTheStartOrInTheMiddleLeavesTheEarlierOutput) {
  SmallFilesystem disk("whole-tmpfs-" + GetParam(), 192);
  if (!disk.Mounted()) GTEST_SKIP() << "mounting a tmpfs needs root";
  const std::string path = OutputIn(disk.Dir());
  PrintInvoiceTo(path, 3, "INV-OLD");
  ASSERT_TRUE(SystemPrinter().Delivered());
  const auto before = Snapshot(disk.Dir());
  // In the middle: 101 pages do not fit in what is left.
  ExpectRefusedWhole(path, 3000, before, disk.Dir(), "a disk that fills up");
  disk.Fill();
  ExpectRefusedWhole(path, 3, Snapshot(disk.Dir()), disk.Dir(), "a disk full from the start");
}

TEST_P(WholeOutput, FilesTakeTheUmaskAndReplacedFilesTheirNewMode) {
  const std::string dir = TempDir("modes-" + GetParam());
  const std::string path = OutputIn(dir);
  const std::string written = GetParam() == "png" ? dir + "/out-1.png" : path;
  {
    ScopedUmask mask(022);
    PrintInvoiceTo(path, 1, "INV-1");
    EXPECT_EQ(ModeOf(written), 0644u);
  }
  {
    ScopedUmask mask(077);
    PrintInvoiceTo(path, 1, "INV-2");
    EXPECT_EQ(ModeOf(written), 0600u);
  }
}

INSTANTIATE_TEST_SUITE_P(EveryKind, WholeOutput, ::testing::Values("pdf", "png", "svg", "jsonl"));

TEST(PngPages, AReprintWithFewerPagesLeavesOnlyTheNewPages) {
  ResetProfileWithCompany();
  const std::string dir = TempDir("png-reprint");
  WriteFile(dir + "/out-9.png", "a user's own file, not part of the set");
  PrintInvoiceTo(dir + "/out.png", 70, "INV-LONG");
  ASSERT_EQ(SystemPrinter().LastPageCount(), 4);
  PrintInvoiceTo(dir + "/out.png", 1, "INV-SHORT");
  ASSERT_EQ(SystemPrinter().LastPageCount(), 1);
  // Pages 2 to 4 of the earlier print are gone; page 9 was never in a set that reached it.
  EXPECT_EQ(Entries(dir), (std::set<std::string>{"out-1.png", "out-9.png"}));
  SystemPrinter().SetOutput(PrinterOutput{});
}

}  // namespace
}  // namespace quorvel::testing
