// Interrupted batches: SIGTERM part way then a rerun with --skip-existing, and a worker process
// killed in the middle of a batch.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

#include "batch/batch.hpp"
#include "robustness/robustness_helpers.hpp"
#include "support/batch_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::vector<std::string> Statements(int count) {
  std::vector<json> documents;
  for (int i = 1; i <= count; ++i) documents.push_back(SmallDocument("statement", "S" + std::to_string(i), kCompanyA));
  return Dump(documents);
}

std::map<std::string, std::pair<ino_t, int64_t>> Identities(const std::string& dir) {
  std::map<std::string, std::pair<ino_t, int64_t>> identities;
  for (const auto& entry : fs::directory_iterator(dir)) {
    struct stat info {};
    stat(entry.path().c_str(), &info);
    identities[entry.path().filename().string()] = {info.st_ino, info.st_mtim.tv_sec * 1000000000LL + info.st_mtim.tv_nsec};
  }
  return identities;
}

long CountPdfs(const std::string& dir) {
  long count = 0;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(dir, error)) count += entry.path().extension() == ".pdf";
  return count;
}

TEST(BatchInterrupt, TerminatedBatchLeavesWholeFilesAndTheRerunPrintsOnlyTheRest) {
  const std::string dir = TempDir("batch-sigterm");
  const int total = 300;
  WriteJsonLines(dir + "/in.jsonl", Statements(total));
  const std::string out = dir + "/out";
  const pid_t batch = StartQuorvel({"batch", dir + "/in.jsonl", "-o", out, "-j", "2"}, dir + "/first.log");
  ASSERT_GT(batch, 0);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  while (CountPdfs(out) < 20 && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  kill(batch, SIGTERM);
  ASSERT_EQ(WaitExit(batch), 128 + SIGTERM) << ReadFile(dir + "/first.log");

  const json first = json::parse(ReadFile(out + "/batch-summary.json"));
  EXPECT_EQ(first["interrupted"], true);
  const long printed_before = CountPdfs(out);
  EXPECT_EQ(first["printed"], printed_before) << "every document reported printed is there, and no more";
  ASSERT_LT(printed_before, total) << "the batch ended before the signal; nothing was interrupted";
  EXPECT_TRUE(Temporaries(dir).empty());
  for (const auto& [name, identity] : Identities(out)) {
    if (name == "batch-summary.json") continue;
    EXPECT_EQ(QpdfPages(out + "/" + name), 1) << name;
  }

  const auto before = Identities(out);
  const CommandResult rerun = RunQuorvel("batch '" + dir + "/in.jsonl' -o '" + out + "' -j 2 --skip-existing");
  ASSERT_EQ(rerun.exit_code, 0) << rerun.output;
  const json second = json::parse(ReadFile(out + "/batch-summary.json"));
  EXPECT_EQ(second["skipped"], printed_before);
  EXPECT_EQ(second["printed"], total - printed_before);
  EXPECT_EQ(CountPdfs(out), total);
  const auto after = Identities(out);
  for (const auto& [name, identity] : before) {
    if (name == "batch-summary.json") continue;
    EXPECT_EQ(after.at(name), identity) << name << " was printed twice";
  }
  for (int i = 1; i <= total; i += 37) EXPECT_EQ(PdfPages(out + "/" + std::to_string(i) + "-statement.pdf"), 1);
  EXPECT_TRUE(Temporaries(dir).empty());
}

// The worker processes of this test process, read from /proc.
std::vector<pid_t> Children() {
  std::vector<pid_t> children;
  for (const auto& task : fs::directory_iterator("/proc/self/task")) {
    std::ifstream in(task.path() / "children");
    for (pid_t pid; in >> pid;) children.push_back(pid);
  }
  return children;
}

TEST(BatchInterrupt, AWorkerKilledMidBatchCostsOnlyTheDocumentItHeld) {
  const std::string dir = TempDir("batch-worker-killed");
  WriteJsonLines(dir + "/in.jsonl", Statements(30));
  BatchOptions options;
  options.input = dir + "/in.jsonl";
  options.out_dir = dir + "/out";
  options.jobs = 1;
  bool killed = false;
  // After the tenth document the one worker is killed: the eleventh, handed to it next, is lost
  // with it, and a fresh worker prints the rest.
  options.progress = [&](const BatchProgress& progress) {
    if (progress.documents != 10 || killed) return;
    const std::vector<pid_t> children = Children();
    ASSERT_EQ(children.size(), 1u);
    killed = kill(children[0], SIGKILL) == 0;
  };
  const BatchSummary summary = RunBatch(options);
  ASSERT_TRUE(killed);
  EXPECT_EQ(summary.printed, 29);
  ASSERT_EQ(summary.failures.size(), 1u);
  EXPECT_EQ(summary.failures[0].source.line, 11);
  EXPECT_NE(summary.failures[0].message.find("killed by signal 9"), std::string::npos) << summary.failures[0].message;
  EXPECT_FALSE(fs::exists(options.out_dir + "/11-statement.pdf"));
  EXPECT_EQ(CountPdfs(options.out_dir), 29);
  EXPECT_EQ(QpdfPages(options.out_dir + "/12-statement.pdf"), 1);
  EXPECT_TRUE(Temporaries(dir).empty());
  EXPECT_TRUE(Children().empty()) << "every worker was waited for";
}

// Killed while its temporary file is half written: the partial file goes with the document.
TEST(BatchInterrupt, AWorkerKilledMidWriteLeavesNoTemporary) {
  const std::string dir = TempDir("batch-killed-mid-write");
  std::vector<json> documents = {SmallDocument("invoice", "K1", kCompanyA), LongInvoice("K2", 4000),
                                 SmallDocument("invoice", "K3", kCompanyB)};
  WriteJsonLines(dir + "/in.jsonl", Dump(documents));
  BatchOptions options;
  options.input = dir + "/in.jsonl";
  options.out_dir = dir + "/out";
  options.jobs = 1;
  BatchSummary summary;
  std::thread batch([&] { summary = RunBatch(options); });
  bool killed = false;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  while (!killed && std::chrono::steady_clock::now() < deadline) {
    std::error_code error;
    if (fs::exists(options.out_dir + "/1-invoice.pdf", error) && !Temporaries(options.out_dir).empty()) {
      const std::vector<pid_t> children = Children();
      killed = children.size() == 1 && kill(children[0], SIGKILL) == 0;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  batch.join();
  ASSERT_TRUE(killed) << "the long invoice was never caught half written";
  ASSERT_EQ(summary.failures.size(), 1u);
  EXPECT_EQ(summary.failures[0].source.line, 2);
  EXPECT_EQ(Entries(options.out_dir), (std::set<std::string>{"1-invoice.pdf", "3-invoice.pdf", "batch-summary.json"}));
}

}  // namespace
}  // namespace quorvel::testing
