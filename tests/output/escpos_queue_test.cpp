// A receipt through a CUPS raw queue: a private scheduler whose raw queue's printer is the fake
// network printer (CUPS's own socket backend connects to it), so the bytes that come out of the
// queue are read back and compared with the job written to a file.
#include <gtest/gtest.h>

#include <regex>

#include "foundation/printer_surface.hpp"
#include "support/escpos_fixture.hpp"
#include "support/ops_helpers.hpp"
#include "support/print_queue_helpers.hpp"

namespace quorvel {
namespace {

using namespace testing;

const std::string kServerScript = QUORVEL_SOURCE_DIR "/tests/print_queue/cups_server.sh";

TEST_F(EscPosPrinting, ARawQueuePassesTheJobToItsPrinterByteForByte) {
  const std::string cups = TempDir("escpos-cups");
  const ShellResult started = Shell("bash '" + kServerScript + "' start '" + cups + "'");
  if (started.status == 77) GTEST_SKIP() << started.output;
  ASSERT_EQ(started.status, 0) << started.output;
  struct Stop {
    std::string dir;
    ~Stop() { Shell("bash '" + kServerScript + "' stop '" + dir + "'"); }
  } stop{cups};
  ScopedEnv env;
  env.Set("CUPS_SERVER", cups + "/cups.sock");
  env.Set("CUPS_SERVERROOT", cups + "/client");

  FakeNetworkPrinter printer(FakeNetworkPrinter::Behaviour::TakeAll);
  const std::string device = "socket://127.0.0.1:" + printer.Uri().substr(printer.Uri().rfind(':') + 1);
  // No model: a raw queue, passing each job to its device untouched.
  const ShellResult added = Shell("lpadmin -p QuorvelRaw -v " + device + " -E");
  ASSERT_EQ(added.status, 0) << added.output;

  std::vector<std::string> results;
  OnFreshThread([&] {
    SystemPrinter().SetOutput(EscPos("cups://QuorvelRaw"));
    PrintSampleReceipt();
    results = SystemPrinter().LastResults();
  });
  ASSERT_EQ(results.size(), 1u);
  EXPECT_TRUE(std::regex_match(results[0], std::regex("job QuorvelRaw-[0-9]+"))) << results[0];
  const std::vector<std::string> jobs = printer.Jobs(60);
  ASSERT_EQ(jobs.size(), 1u) << Shell("tail -n 20 '" + cups + "/log/error_log'").output;

  const std::string file = dir_ + "/same.escpos";
  SystemPrinter().SetOutput(EscPos(file));
  PrintSampleReceipt();
  EXPECT_EQ(ReadEscPos(jobs[0]).error, "");
  EXPECT_GT(jobs[0].size(), 10000u);
  EXPECT_TRUE(jobs[0] == ReadFile(file)) << jobs[0].size() << " bytes against " << ReadFile(file).size();

  // A queue that does not exist is the printer error before anything is drawn.
  OnFreshThread([&] {
    SystemPrinter().SetOutput(EscPos("cups://NoSuchRawQueue"));
    std::string context;
    EXPECT_EQ(ErrorNumberOf([] { PrintSampleReceipt(); }, &context), 482);
    EXPECT_TRUE(Contains(context, "no print queue named \"NoSuchRawQueue\"")) << context;
  });
}

}  // namespace
}  // namespace quorvel
