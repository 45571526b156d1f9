// The direct PDF device against cairo's PDF device replaying the same recorded pages, and the
// full print against the direct device's own replay.
#include <benchmark/benchmark.h>

#include "bench/bench_documents.hpp"

namespace quorvel::bench {

namespace {

// Pages recorded once; each iteration is one whole document through the device. Fonts stay
// parsed across iterations, as across the documents of one process.
void Replay(benchmark::State& state, const std::string& device, const std::string& type, int lines) {
  SetBenchCompany();
  const BenchDocument doc = MakeDocument(type, lines);
  const std::vector<RecordedPage> pages = RecordPages(doc, RunDir() + "/" + type + ".jsonl");
  const std::string path = RunDir() + "/" + type + "-" + device + ".pdf";
  size_t bytes = 0;
  for (auto _ : state) bytes = ReplayToDevice(pages, device, path);
  state.counters["pages"] =
      benchmark::Counter(static_cast<double>(pages.size()), benchmark::Counter::kIsIterationInvariantRate);
  state.counters["pages_per_doc"] = static_cast<double>(pages.size());
  state.counters["bytes"] = static_cast<double>(bytes);
}

// The sizes the comparison is about: a 500-item invoice, a 2,000-line statement, documents of
// about 20 pages, and one-page documents.
struct Case {
  const char* name;
  const char* type;
  int lines;
};
constexpr Case kCases[] = {
    {"invoice500", "invoice", 500},     {"statement2000", "statement", 2000},
    {"invoice20p", "invoice", 195},      {"statement20p", "statement", 340},
    {"invoice1p", "invoice", 12},        {"voucher1p", "voucher", 3},
};

const bool kRegistered = [] {
  for (const Case& c : kCases)
    for (const char* device : {"pdf", "pdf-cairo"})
      benchmark::RegisterBenchmark((std::string("Device/") + device + "/" + c.name).c_str(), Replay,
                                   std::string(device), std::string(c.type), c.lines)
          ->Unit(benchmark::kMillisecond)->UseRealTime();
  return true;
}();

}  // namespace

const std::vector<std::pair<std::string, std::string>>& DeviceCases() {
  static const std::vector<std::pair<std::string, std::string>> cases = [] {
    std::vector<std::pair<std::string, std::string>> all;
    for (const Case& c : kCases) all.emplace_back(c.name, c.type);
    return all;
  }();
  return cases;
}

}  // namespace quorvel::bench
