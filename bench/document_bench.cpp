// Document throughput: every type on a preview and to PDF, the cairo floor, and line scaling.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>

#include "bench/bench_documents.hpp"
#include "bench/bench_summary.hpp"

extern char** environ;

namespace quorvel::bench {

namespace {

void Preview(benchmark::State& state, const std::string& type, int lines) {
  SetBenchCompany();
  const BenchDocument doc = MakeDocument(type, lines);
  for (auto _ : state) benchmark::DoNotOptimize(PrintToPreview(doc));
  state.counters["docs"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}

void Pdf(benchmark::State& state, const std::string& type, int lines) {
  SetBenchCompany();
  const BenchDocument doc = MakeDocument(type, lines);
  const std::string path = RunDir() + "/" + type + ".pdf";
  // The document is built and one copy printed before the peak is reset: what remains is the
  // memory printing itself needs on top of the host's data.
  PrintToFile(doc, path);
  const double before = CurrentRssMiB();
  ResetPeakRss();
  int pages = 0;
  for (auto _ : state) pages = PrintToFile(doc, path);
  state.counters["pages"] = benchmark::Counter(pages, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["pages_per_doc"] = pages;
  state.counters["print_growth_MiB"] = PeakRssMiB() - before;
}

// The same pages, recorded once, replayed straight into a cairo PDF: what drawing alone costs.
void Floor(benchmark::State& state, const std::string& type, int lines) {
  SetBenchCompany();
  const BenchDocument doc = MakeDocument(type, lines);
  const std::vector<RecordedPage> pages = RecordPages(doc, RunDir() + "/" + type + ".jsonl");
  const std::string path = RunDir() + "/" + type + "-floor.pdf";
  for (auto _ : state) ReplayToPdf(pages, path);
  state.counters["pages"] =
      benchmark::Counter(static_cast<double>(pages.size()), benchmark::Counter::kIsIterationInvariantRate);
}

// `quorvel print` of the sample receipt as a whole process: start, load, lay out, write, exit.
void ReceiptProcess(benchmark::State& state) {
  const std::string binary = QUORVEL_BINARY_DIR "/cli/quorvel";
  const std::string sample = QUORVEL_SOURCE_DIR "/demo/samples/receipt.json";
  const std::string out = RunDir() + "/receipt.pdf";
  std::vector<std::string> words = {binary, "print", sample, "-o", out};
  std::vector<char*> argv;
  for (std::string& w : words) argv.push_back(w.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  for (auto _ : state) {
    pid_t pid = 0;
    int status = 0;
    if (posix_spawn(&pid, binary.c_str(), &actions, nullptr, argv.data(), environ) != 0 ||
        waitpid(pid, &status, 0) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
      state.SkipWithError("quorvel print failed");
      break;
    }
  }
  posix_spawn_file_actions_destroy(&actions);
}

// Registers the three measures of every type at both sizes, then the scaling pair.
const bool kRegistered = [] {
  for (const std::string& type : DocumentTypeNames()) {
    for (const auto& [size, lines] : {std::pair{"small", SmallLines(type)}, std::pair{"large", LargeLines(type)}}) {
      const std::string suffix = type + "/" + size;
      benchmark::RegisterBenchmark(("Preview/" + suffix).c_str(), Preview, type, lines)
          ->Unit(benchmark::kMillisecond)->UseRealTime();
      benchmark::RegisterBenchmark(("Pdf/" + suffix).c_str(), Pdf, type, lines)
          ->Unit(benchmark::kMillisecond)->UseRealTime();
      benchmark::RegisterBenchmark(("Floor/" + suffix).c_str(), Floor, type, lines)
          ->Unit(benchmark::kMillisecond)->UseRealTime();
    }
  }
  // Cost and memory against the number of lines: ten times the lines, about ten times the time.
  for (int lines : {2000, 20000})
    benchmark::RegisterBenchmark(("Scale/statement/" + std::to_string(lines)).c_str(), Pdf,
                                 std::string("statement"), lines)
        ->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
  benchmark::RegisterBenchmark("Process/receipt", ReceiptProcess)->Unit(benchmark::kMillisecond)->UseRealTime();
  return true;
}();

}  // namespace

}  // namespace quorvel::bench
