// Prints one benchmark document for profilers and memory probes:
//   quorvel_bench_driver TYPE LINES print|preview|floor|replay OUT [REPEAT]
// print: through the system printer to OUT (.pdf or .jsonl); preview: on a preview surface;
// floor: record once, then replay the pages REPEAT times straight into a cairo PDF at OUT;
// replay: the same through the direct PDF device.
// One untimed round runs first (fonts loaded, caches warm); the timed rounds run inside
// RunMeasured, so a profiler can collect that alone:
//   valgrind --tool=callgrind --collect-atstart=no --toggle-collect='*RunMeasured*' ...
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "bench/bench_documents.hpp"

namespace {
using namespace quorvel::bench;

long PeakRssKiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

size_t RunOnce(const BenchDocument& doc, const std::string& mode, const std::string& out,
               const std::vector<RecordedPage>& recorded) {
  if (mode == "preview") return PrintToPreview(doc), 0;
  if (mode == "floor") return ReplayToPdf(recorded, out), recorded.size();
  if (mode == "replay") return ReplayToDevice(recorded, "pdf", out), recorded.size();
  return static_cast<size_t>(PrintToFile(doc, out));
}

[[gnu::noinline]] size_t RunMeasured(const BenchDocument& doc, const std::string& mode, const std::string& out,
                                     const std::vector<RecordedPage>& recorded, int repeat) {
  size_t pages = 0;
  for (int i = 0; i < repeat; ++i) pages = RunOnce(doc, mode, out, recorded);
  return pages;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fprintf(stderr, "usage: %s TYPE LINES print|preview|floor|replay OUT [REPEAT]\n", argv[0]);
    return 2;
  }
  try {
    SetBenchCompany();
    const BenchDocument doc = MakeDocument(argv[1], std::atoi(argv[2]));
    const std::string mode = argv[3], out = argv[4];
    const int repeat = argc > 5 ? std::atoi(argv[5]) : 1;
    std::vector<RecordedPage> recorded;
    if (mode == "floor" || mode == "replay") recorded = RecordPages(doc, out + ".jsonl");
    const long built = PeakRssKiB();  // the document's own data is in memory from here on
    RunOnce(doc, mode, out, recorded);
    const auto start = std::chrono::steady_clock::now();
    const size_t pages = RunMeasured(doc, mode, out, recorded, repeat);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    const long peak = PeakRssKiB();
    std::printf("%s %s lines (%s): %zu pages, %.1f ms per document; peak RSS %ld KiB, of which printing "
                "added %ld KiB to the %ld KiB of the built document\n",
                argv[1], argv[2], mode.c_str(), pages, took.count() / repeat, peak, peak - built, built);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
  }
  return 0;
}
