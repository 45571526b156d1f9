// Month-end batch throughput: one-page statements to separate PDFs by RunBatch on every core,
// against one `quorvel print` process per document and the single-process print loop, in one run.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "batch/batch.hpp"
#include "batch/print_job.hpp"
#include "batch/worker_pool.hpp"
#include "bench/bench_documents.hpp"

extern char** environ;

namespace quorvel::bench {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// The sample statement cut to a one-page document: a few ledger lines, no cheque pages.
std::string OnePageStatement(int serial) {
  std::ifstream in(QUORVEL_SOURCE_DIR "/demo/samples/statement.json");
  nlohmann::json document = nlohmann::json::parse(in);
  auto& body = document["document"];
  body["PrintPDCChecks"] = false;
  body["StatementNumber"] = "ST-" + std::to_string(serial);
  auto& lines = body["StatementItems"];
  if (lines.size() > 8) lines.erase(lines.begin() + 8, lines.end());
  return document.dump();
}

double CpuSeconds(int who) {
  rusage usage{};
  getrusage(who, &usage);
  return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

double Seconds(Clock::time_point since) { return std::chrono::duration<double>(Clock::now() - since).count(); }

int DocumentCount() {
  const char* count = std::getenv("QUORVEL_BENCH_BATCH_DOCUMENTS");
  return count ? std::max(10, std::atoi(count)) : 10000;
}

// The workers' resident sets (MiB, summed), read from /proc while the batch runs.
double WorkersRssMiB() {
  double kib = 0;
  for (const auto& task : fs::directory_iterator("/proc/self/task")) {
    std::ifstream children(task.path() / "children");
    for (int pid; children >> pid;) {
      std::ifstream status("/proc/" + std::to_string(pid) + "/status");
      for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) kib += std::stod(line.substr(6));
    }
  }
  return kib / 1024;
}

// Seconds per document of `quorvel print` started once per document, one after another.
double ProcessSecondsPerDocument(const std::string& dir, int samples) {
  const std::string binary = QUORVEL_BINARY_DIR "/cli/quorvel";
  const std::string input = dir + "/one.json";
  std::ofstream(input) << OnePageStatement(0);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  const auto started = Clock::now();
  for (int i = 0; i < samples; ++i) {
    std::vector<std::string> words = {binary, "print", input, "-o", dir + "/process-" + std::to_string(i) + ".pdf"};
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    int status = 0;
    if (posix_spawn(&pid, binary.c_str(), &actions, nullptr, argv.data(), environ) != 0 ||
        waitpid(pid, &status, 0) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
      return -1;
  }
  posix_spawn_file_actions_destroy(&actions);
  return Seconds(started) / samples;
}

// The print loop in this one process: the same per-document work a worker does, no batch around it.
double LoopCpuSecondsPerDocument(const std::string& dir, int documents) {
  const double cpu = CpuSeconds(RUSAGE_SELF);
  for (int i = 0; i < documents; ++i) {
    const batch::Outcome outcome =
        batch::PrintJob({static_cast<uint64_t>(i), dir + "/loop-" + std::to_string(i) + ".pdf", OnePageStatement(i)}, "a4");
    if (!outcome.ok || outcome.pages != 1) return -1;
  }
  return (CpuSeconds(RUSAGE_SELF) - cpu) / documents;
}

void MonthEndStatements(benchmark::State& state) {
  const int documents = DocumentCount();
  const int jobs = batch::CoreCount();
  const std::string dir = BenchTempDir();
  {
    std::ofstream lines(dir + "/statements.jsonl");
    for (int i = 1; i <= documents; ++i) lines << OnePageStatement(i) << "\n";
  }
  for (auto _ : state) {
    double rss_early = 0, rss_late = 0;
    BatchOptions options;
    options.input = dir + "/statements.jsonl";
    options.out_dir = dir + "/out";
    options.jobs = jobs;
    options.progress = [&](const BatchProgress& progress) {
      if (progress.documents == progress.total / 10) rss_early = WorkersRssMiB();
      if (progress.documents == progress.total * 9 / 10) rss_late = WorkersRssMiB();
    };
    const double cpu = CpuSeconds(RUSAGE_SELF) + CpuSeconds(RUSAGE_CHILDREN);
    const auto started = Clock::now();
    const BatchSummary summary = RunBatch(options);
    const double wall = Seconds(started);
    const double batch_cpu = CpuSeconds(RUSAGE_SELF) + CpuSeconds(RUSAGE_CHILDREN) - cpu;
    if (summary.printed != documents || summary.pages != documents) {
      state.SkipWithError("the batch did not print every statement on one page");
      break;
    }
    const double loop_cpu = LoopCpuSecondsPerDocument(dir, 200);
    const double process = ProcessSecondsPerDocument(dir, 100);
    if (loop_cpu <= 0 || process <= 0) {
      state.SkipWithError(loop_cpu <= 0 ? "the in-process print loop failed" : "quorvel print failed");
      break;
    }
    state.counters["documents"] = documents;
    state.counters["jobs"] = jobs;
    state.counters["batch_docs_per_s"] = documents / wall;
    state.counters["processes_docs_per_s"] = 1 / process;
    state.counters["speedup_vs_processes"] = process * documents / wall;
    // Per core, by CPU time: the batch's documents per CPU-second (parent and workers) over the
    // loop's; CPU time is what other load on a shared machine disturbs least.
    state.counters["per_core_vs_loop"] = (documents / batch_cpu) / (1 / loop_cpu);
    state.counters["worker_rss_10pct_MiB"] = rss_early / jobs;
    state.counters["worker_rss_90pct_MiB"] = rss_late / jobs;
  }
  fs::remove_all(dir);
}

const bool kRegistered = [] {
  benchmark::RegisterBenchmark("Batch/statements", MonthEndStatements)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
  return true;
}();

}  // namespace

}  // namespace quorvel::bench
