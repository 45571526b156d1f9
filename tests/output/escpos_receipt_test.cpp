// Receipts on an ESC/POS printer, read back with the tests' own ESC/POS reader: the commands in
// order, and the printed dots against the PNG path's picture of the same page.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "foundation/printer_surface.hpp"
#include "invoices/invoice_printer.hpp"
#include "quorvel.h"
#include "support/capi_helpers.hpp"
#include "support/documents_helpers.hpp"
#include "support/escpos_fixture.hpp"
#include "support/ops_helpers.hpp"
#include "support/print_queue_helpers.hpp"
#include "support/shaping_helpers.hpp"
#include "automation/document_file.hpp"
#include "automation/document_job.hpp"

namespace quorvel {
namespace {

using namespace testing;

int CountOf(const EscPosJob& job, const std::string& name) {
  const std::vector<std::string> names = job.Names();
  return static_cast<int>(std::count(names.begin(), names.end(), name));
}

int IndexOf(const EscPosJob& job, const std::string& name) {
  const std::vector<std::string> names = job.Names();
  return static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin());
}

// The rightmost black dot of the picture, -1 when there is none.
int RightmostBlack(const Bitmap& picture) {
  int rightmost = -1;
  for (const auto& row : picture.rows)
    for (int x = picture.width - 1; x > rightmost; --x)
      if (row[x]) rightmost = x;
  return rightmost;
}

// A job's frame: initialise first, then only raster blocks (each within a printer's buffer),
// then the end: optional drawer pulse, the feed, and the cut when asked for.
void ExpectReceiptFrame(const EscPosJob& job, bool cut, bool drawer) {
  ASSERT_EQ(job.error, "");
  ASSERT_GE(job.commands.size(), 3u);
  EXPECT_EQ(job.commands.front().name, "ESC @");
  EXPECT_EQ(CountOf(job, "ESC @"), 1);
  for (const EscPosCommand& command : job.commands)
    if (command.name == "GS v 0") {
      EXPECT_LE(command.args[2], 255) << "a raster block of " << command.args[2] << " rows";
    }
  const int blocks = CountOf(job, "GS v 0");
  // At least ceil(rows / 255) blocks (each page starts its own), right after ESC @.
  EXPECT_GE(blocks, (job.picture.Height() + 254) / 255);
  EXPECT_EQ(IndexOf(job, "GS v 0"), 1);
  const std::vector<std::string> names = job.Names();
  std::vector<std::string> ending(names.begin() + 1 + blocks, names.end());
  std::vector<std::string> expected;
  if (drawer) expected.push_back("ESC p");
  expected.push_back("ESC d");
  if (cut) expected.push_back("GS V");
  EXPECT_EQ(ending, expected);
  if (cut) {
    const int mode = job.commands.back().args[0];
    EXPECT_TRUE(mode == 1 || mode == 49 || mode == 66) << "not a partial cut: mode " << mode;
  }
  if (drawer) {
    const EscPosCommand& pulse = job.commands[IndexOf(job, "ESC p")];
    EXPECT_TRUE(pulse.args[0] == 0 || pulse.args[0] == 48) << "drawer pin " << pulse.args[0];
    EXPECT_GT(pulse.args[1], 0);
    EXPECT_GE(pulse.args[2], pulse.args[1]);
  }
  // The feed: enough lines (1/6 inch each) to bring the last printed row past a cutter 15 mm on.
  const EscPosCommand& feed = job.commands[IndexOf(job, "ESC d")];
  EXPECT_GE(feed.args[0] * 25.4 / 6, 15.0);
}

// The printed picture is the PNG path's picture of the whole roll page, cut to what was printed:
// the same dots in the rows printed, and nothing black in the rows left off.
void ExpectRollPicture(const Bitmap& printed, const Bitmap& whole_page) {
  ASSERT_GT(printed.Height(), 0);
  ASSERT_LT(printed.Height(), whole_page.Height());
  EXPECT_EQ(FirstDifference(Rows(whole_page, 0, printed.Height()), printed), "");
  EXPECT_EQ(BlackDots(Rows(whole_page, printed.Height(), whole_page.Height())), 0) << "the cut lost printed rows";
  EXPECT_GT(BlackDots(printed), 2000);
}

// An Arabic store name reaches the thermal printer shaped: its runs are hb-shape's glyphs in the
// Arabic fallback face, and the printed dots are the PNG path's picture of the same page.
TEST_F(EscPosPrinting, AnArabicStoreNamePrintsShapedOnTheRaster) {
  const std::string store = "فرع النور";
  auto print = [&] {
    nlohmann::json document = ReadDocumentFile(kReceiptSample);
    document["document"]["Store"] = store;
    PrintJobOnSystemPrinter(LoadDocumentJob(document));
  };
  const std::vector<DrawOps> pages = DrawnPages(print);
  ASSERT_EQ(pages.size(), 1u);
  const TextOp store_line = FindText(pages[0], store);
  ExpectRunsShapedAsHbShape(store_line);
  for (const GlyphRun& run : GlyphRunsOf(store_line))
    EXPECT_NE(run.face->File().find("Arabic"), std::string::npos) << run.face->File();

  FakeNetworkPrinter printer(FakeNetworkPrinter::Behaviour::TakeAll);
  SystemPrinter().SetOutput(EscPos(printer.Uri()));
  print();
  const std::vector<std::string> jobs = printer.Jobs();
  ASSERT_EQ(jobs.size(), 1u);
  const EscPosJob job = ReadEscPos(jobs[0]);
  ExpectReceiptFrame(job, true, false);
  ExpectRollPicture(job.picture, PngPicture(pages[0], kRollWidth, kRollLength, 576));
}

// The sample receipt on a network printer with the default options, then through the C
// interface's setter to a file with each paper, resolution, cut and drawer choice.
TEST_F(EscPosPrinting, TheSampleReceiptPrintsDotForDotOnEveryPaperAndResolution) {
  const std::vector<DrawOps> pages = DrawnPages(PrintSampleReceipt);
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_TRUE(HasText(pages[0], "Corner Tea House"));
  FakeNetworkPrinter printer(FakeNetworkPrinter::Behaviour::TakeAll);
  SystemPrinter().SetOutput(EscPos(printer.Uri()));
  PrintSampleReceipt();
  EXPECT_EQ(SystemPrinter().LastResults(), std::vector<std::string>{printer.Uri()});
  EXPECT_EQ(SystemPrinter().LastPageCount(), 1);
  const std::vector<std::string> jobs = printer.Jobs();
  ASSERT_EQ(jobs.size(), 1u);
  const EscPosJob sent = ReadEscPos(jobs[0]);
  ExpectReceiptFrame(sent, true, false);
  EXPECT_EQ(CountOf(sent, "ESC p"), 0) << "the drawer opened unasked";
  ASSERT_EQ(sent.picture.width, 576);
  ExpectRollPicture(sent.picture, PngPicture(pages[0], kRollWidth, kRollLength, 576));
  // The whole 80 mm page spans the 576 dots, so the 4176-twip slip ends at dot 530 and nothing
  // of it is past the paper's edge.
  const int rightmost = RightmostBlack(sent.picture);
  EXPECT_GT(rightmost, 400);
  EXPECT_LE(rightmost, static_cast<int>(std::lround(4176 * 576 / kRollWidth)));

  struct Choice {
    int paper_mm, dpi;
    bool cut, drawer;
    int dots;  // the printable width: 72 mm (80 mm paper) or 48 mm (58 mm paper) of dots
  };
  for (const Choice& choice : {Choice{80, 203, true, true, 576}, Choice{80, 180, false, false, 512},
                               Choice{58, 203, true, false, 384}, Choice{58, 180, false, true, 360}}) {
    SCOPED_TRACE(std::to_string(choice.paper_mm) + " mm at " + std::to_string(choice.dpi) + " dpi");
    const std::string path = dir_ + "/receipt.escpos";
    ASSERT_EQ(quorvel_printer_set_escpos(path.c_str(), choice.paper_mm, choice.dpi, choice.cut, choice.drawer, 5, nullptr),
              QUORVEL_OK) << LastError();
    PrintSampleReceipt();
    EXPECT_EQ(LastResults(), std::vector<std::string>{path});
    const EscPosJob job = ReadEscPos(ReadFile(path));
    ExpectReceiptFrame(job, choice.cut, choice.drawer);
    EXPECT_EQ(CountOf(job, "GS V"), choice.cut ? 1 : 0);
    EXPECT_EQ(CountOf(job, "ESC p"), choice.drawer ? 1 : 0);
    ASSERT_EQ(job.picture.width, choice.dots);
    ExpectRollPicture(job.picture, PngPicture(pages[0], kRollWidth, kRollLength, choice.dots));
  }
  // A .escpos file through the plain output setter takes the defaults: 576 dots, cut, no drawer.
  const std::string path = dir_ + "/plain.escpos";
  ASSERT_EQ(quorvel_printer_set_output(path.c_str(), nullptr), QUORVEL_OK) << LastError();
  PrintSampleReceipt();
  const EscPosJob job = ReadEscPos(ReadFile(path));
  ExpectReceiptFrame(job, true, false);
  EXPECT_EQ(job.picture.width, 576);
}

TEST_F(EscPosPrinting, BadOptionsAndDestinationsAreRefusedByName) {
  const std::string file = dir_ + "/r.escpos";
  struct Bad {
    const char* destination;
    int paper_mm, dpi, timeout;
    const char* named;
  };
  for (const Bad& bad : {Bad{file.c_str(), 76, 203, 10, "76 mm"}, Bad{file.c_str(), 80, 300, 10, "300 dpi"},
                         Bad{file.c_str(), 80, 203, 0, "time-out 0"}, Bad{"tcp://", 80, 203, 10, "tcp://HOST"},
                         Bad{"tcp://printer:99999", 80, 203, 10, "tcp://printer:99999"},
                         Bad{"/no/such/folder/r.escpos", 80, 203, 10, "/no/such/folder/r.escpos"}}) {
    const int32_t status = quorvel_printer_set_escpos(bad.destination, bad.paper_mm, bad.dpi, 1, 0, bad.timeout, nullptr);
    EXPECT_NE(status, QUORVEL_OK) << bad.destination;
    EXPECT_TRUE(Contains(LastError(), bad.named)) << LastError();
  }
  EXPECT_EQ(quorvel_printer_set_escpos(nullptr, 80, 203, 1, 0, 10, nullptr), 5);
  // The command checks its options before it reads or draws anything.
  const std::string print = kQuorvelCommand + " print " + kReceiptSample;
  for (const auto& [arguments, named] : {std::pair{" --escpos tcp://127.0.0.1:1 --escpos-paper 76", "76"},
                                         std::pair{" --escpos tcp:// ", "tcp://HOST"},
                                         std::pair{" --escpos tcp://127.0.0.1:1 -o x.escpos", "choose one output"}}) {
    const ShellResult cli = Shell(print + arguments);
    EXPECT_NE(cli.status, 0) << arguments;
    EXPECT_TRUE(Contains(cli.output, named)) << cli.output;
  }
}

// A document of several A4 pages: one job, the pages one under the other as one strip, each the
// PNG path's picture of that page, one cut at the end.
TEST_F(EscPosPrinting, ALongInvoicePrintsAsOneStrip) {
  ResetProfileWithCompany();
  ClassInvoice invoice = SampleInvoice();
  for (int i = 1; i <= 90; ++i) invoice.AddItem(MakeItem("Item " + std::to_string(i), "Bolt M" + std::to_string(i)));
  const auto print = [&] { ClassInvoicePrinter().PrintIt(invoice, true); };
  const std::vector<DrawOps> pages = DrawnPages(print);
  ASSERT_GE(pages.size(), 3u);

  const std::string path = dir_ + "/invoice.escpos";
  SystemPrinter().SetOutput(EscPos(path));
  print();
  EXPECT_EQ(SystemPrinter().LastPageCount(), static_cast<int>(pages.size()));
  const EscPosJob job = ReadEscPos(ReadFile(path));
  ExpectReceiptFrame(job, true, false);
  ASSERT_EQ(job.picture.width, 576);
  // A4 scaled to 576 dots across: 16838 × 576 / 11906 rows a page.
  const int page_rows = static_cast<int>(std::lround(kA4Height * 576 / kA4Width));
  ASSERT_EQ(job.picture.Height(), page_rows * static_cast<int>(pages.size()));
  for (size_t i = 0; i < pages.size(); ++i) {
    SCOPED_TRACE("page " + std::to_string(i + 1));
    const Bitmap expected = PngPicture(pages[i], kA4Width, kA4Height, 576);
    EXPECT_EQ(FirstDifference(expected, Rows(job.picture, static_cast<int>(i) * page_rows, page_rows)), "");
    EXPECT_GT(BlackDots(expected), 1000);
  }
}

}  // namespace
}  // namespace quorvel
