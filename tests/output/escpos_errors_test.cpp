// Receipt printers that fail: each failure is error 482 with its cause through PrintIt, the C
// interface and the command, and nothing is reported printed. And device nodes that work.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "invoices/invoice.hpp"
#include "quorvel.h"
#include "receipts/receipt_printer.hpp"
#include "support/capi_helpers.hpp"
#include "support/documents_helpers.hpp"
#include "support/escpos_fixture.hpp"
#include "support/ops_helpers.hpp"
#include "support/print_queue_helpers.hpp"

namespace quorvel {
namespace {

using namespace testing;
constexpr int32_t kPrinterError = 482;

// A failing printer: where it is, and what the error must say about it.
struct Failure {
  std::string name;
  std::string destination;
  std::string cause;
};

// A small sale printed with the C++ ReceiptPrinter.PrintIt; the automation error number.
int32_t PrintSaleInCpp(std::string& context) {
  ClassInvoice sale;
  sale.Store = "Kiosk 3";
  sale.InvoiceNumber = "R-1";
  sale.AddItem(MakeItem("Tea", "Green tea", "3.20"));
  sale.Total = "3.20";
  return ErrorNumberOf([&] { ReceiptPrinter().PrintIt(sale); }, &context);
}

// The same sale built by names and printed through the C interface; the status.
int32_t PrintSaleByNames() {
  CObject sale = Create("Quorvel.ClassInvoice");
  Put(sale, "Store", CText("Kiosk 3"));
  Put(sale, "InvoiceNumber", CText("R-2"));
  Put(sale, "Total", CText("3.20"));
  CObject printer = Create("Quorvel.ReceiptPrinter");
  std::vector<quorvel_variant> args{CObj(sale)};
  return quorvel_call(printer.get(), "PrintIt", args.data(), 1, nullptr);
}

void ExpectFailsEverywhere(const Failure& failure) {
  SCOPED_TRACE(failure.name + " at " + failure.destination);
  PrinterOutput output;
  output.device = "escpos";
  output.path = failure.destination;
  output.escpos.timeout_seconds = 1;
  SystemPrinter().SetOutput(output);
  std::string context;
  EXPECT_EQ(PrintSaleInCpp(context), kPrinterError);
  EXPECT_TRUE(Contains(context, failure.cause)) << context;
  EXPECT_FALSE(SystemPrinter().InDocument());
  // Results describe only a delivered document: after a failed job there are none at all.
  EXPECT_EQ(SystemPrinter().LastResults(), std::vector<std::string>{}) << "a failed job was reported printed";

  ASSERT_EQ(quorvel_printer_set_escpos(failure.destination.c_str(), 80, 203, 1, 0, 1, nullptr), QUORVEL_OK) << LastError();
  EXPECT_EQ(PrintSaleByNames(), kPrinterError);
  EXPECT_TRUE(Contains(LastError(), "Printer error") && Contains(LastError(), failure.cause)) << LastError();
  EXPECT_EQ(LastResults(), std::vector<std::string>{});

  const ShellResult cli = Shell(kQuorvelCommand + " print " + kReceiptSample + " --escpos '" + failure.destination +
                                "' --escpos-timeout 1");
  EXPECT_EQ(cli.status, 2);
  EXPECT_TRUE(Contains(cli.output, "error 482") && Contains(cli.output, failure.cause)) << cli.output;
  EXPECT_FALSE(Contains(cli.output, "wrote")) << cli.output;
}

TEST_F(EscPosPrinting, APrinterThatFailsIsError482ThroughEveryEntry) {
  // A finished job first, so that a failure could be mistaken for it.
  const std::string earlier = dir_ + "/earlier.escpos";
  SystemPrinter().SetOutput(EscPos(earlier));
  PrintSampleReceipt();
  ASSERT_EQ(SystemPrinter().LastResults(), std::vector<std::string>{earlier});

  ExpectFailsEverywhere({"refused", "tcp://127.0.0.1:" + std::to_string(ClosedPort()), "Connection refused"});
  {
    // Takes the first kilobyte of each job, then hangs up.
    FakeNetworkPrinter closing(FakeNetworkPrinter::Behaviour::CloseEarly, 1024, 3);
    ExpectFailsEverywhere({"closes mid-job", closing.Uri(), "closed the connection"});
    for (const std::string& job : closing.Jobs()) EXPECT_EQ(job.size(), 1024u);
  }
  {
    // Never reads: the job cannot be taken within the one-second time-out.
    FakeNetworkPrinter stalled(FakeNetworkPrinter::Behaviour::Stall, 0, 3);
    ExpectFailsEverywhere({"time-out", stalled.Uri(), "timed out"});
  }
  {
    // A raw queue on a scheduler that is not running: refused when the document starts.
    ScopedEnv env;
    env.Set("CUPS_SERVER", dir_ + "/no-scheduler.sock");
    OnFreshThread([&] {
      ExpectFailsEverywhere({"no scheduler", "cups://Receipts", "cannot be reached"});
    });
  }
  ExpectFailsEverywhere({"full device", "/dev/full", "No space left on device"});
  ExpectFailsEverywhere({"missing device", "/dev/usb/quorvel-no-such-lp", "cannot be opened"});
  const std::string plain = dir_ + "/plain-file";
  std::ofstream(plain) << "not a printer";
  ExpectFailsEverywhere({"plain file", plain, "is a plain file"});
  EXPECT_EQ(ReadFile(plain), "not a printer");
}

// Reads a FIFO until every writer has gone, for at most 20 seconds.
std::string Drain(int fd) {
  std::string bytes;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  char buffer[4096];
  while (std::chrono::steady_clock::now() < end) {
    pollfd entry{fd, POLLIN, 0};
    if (poll(&entry, 1, 50) <= 0) continue;
    const ssize_t n = read(fd, buffer, sizeof buffer);
    if (n == 0) break;
    if (n > 0) bytes.append(buffer, static_cast<size_t>(n));
  }
  return bytes;
}

// A device node that takes the job (a FIFO standing in for /dev/usb/lp0) gets the very bytes a
// .escpos file gets.
TEST_F(EscPosPrinting, ADeviceNodeTakesTheSameBytesAsAFile) {
  const std::string node = dir_ + "/lp0";
  ASSERT_EQ(mkfifo(node.c_str(), 0600), 0);
  const int reader = open(node.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  // A writer of the test's own keeps the FIFO open until the job is done, so the reader sees the
  // end only after the device has written everything and closed.
  const int keep_open = open(node.c_str(), O_WRONLY);
  ASSERT_GE(keep_open, 0);
  std::string received;
  std::thread drain([&] { received = Drain(reader); });
  SystemPrinter().SetOutput(EscPos(node));
  PrintSampleReceipt();
  close(keep_open);
  drain.join();
  close(reader);
  EXPECT_EQ(SystemPrinter().LastResults(), std::vector<std::string>{node});

  const std::string file = dir_ + "/same.escpos";
  SystemPrinter().SetOutput(EscPos(file));
  PrintSampleReceipt();
  EXPECT_EQ(ReadEscPos(received).error, "");
  EXPECT_GT(received.size(), 10000u);
  EXPECT_TRUE(received == ReadFile(file)) << received.size() << " bytes against " << ReadFile(file).size();
}

// A document abandoned half-way leaves no file and sends nothing.
TEST_F(EscPosPrinting, AnAbandonedDocumentLeavesNothing) {
  const std::string file = dir_ + "/abandoned.escpos";
  FakeNetworkPrinter printer(FakeNetworkPrinter::Behaviour::TakeAll);
  for (const std::string& destination : {file, printer.Uri()}) {
    SystemPrinter().SetOutput(EscPos(destination));
    SystemPrinter().Print("a line");
    SystemPrinter().NewPage();
    SystemPrinter().Print("another line");
    SystemPrinter().KillDoc();
  }
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_TRUE(std::filesystem::is_empty(dir_));
  EXPECT_TRUE(printer.Jobs().empty());
}

}  // namespace
}  // namespace quorvel
