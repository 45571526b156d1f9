// A print killed part way leaves no file at its path, and the next run in that folder removes
// the temporary file the killed one left.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <thread>

#include "robustness/robustness_helpers.hpp"
#include "support/batch_helpers.hpp"
#include "support/ops_helpers.hpp"
#include "support/output_helpers.hpp"

namespace quorvel::testing {
namespace {

TEST(KilledPrint, NoPartialFileAndTheNextRunRemovesTheLeftoverTemporaryFile) {
  const std::string dir = TempDir("killed");
  const std::string document = StatementWithLines(dir, 20000);
  const pid_t pid = StartQuorvel({"print", document, "-o", dir + "/out.pdf"}, "/dev/null");
  ASSERT_GT(pid, 0);
  // The command first proves the folder writable with an empty temporary file it removes at
  // once, so the kill waits for a temporary file holding bytes: the PDF itself, part written.
  // Over a thousand pages follow its first block, so the kill comes well before the end.
  const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (TemporaryBytes(dir) == 0 && std::chrono::steady_clock::now() < give_up)
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  kill(pid, SIGKILL);
  ASSERT_EQ(WaitExit(pid), 128 + SIGKILL) << "the print ended before it was killed";
  EXPECT_EQ(Entries(dir).count("out.pdf"), 0u);
  EXPECT_EQ(TemporaryFiles(dir), 1);

  const CommandResult next =
      RunQuorvel("print " QUORVEL_SOURCE_DIR "/demo/samples/voucher.json -o '" + dir + "/voucher.pdf'");
  ASSERT_EQ(next.exit_code, 0) << next.output;
  EXPECT_EQ(Entries(dir), (std::set<std::string>{"lines.json", "voucher.pdf"}));
}

}  // namespace
}  // namespace quorvel::testing
