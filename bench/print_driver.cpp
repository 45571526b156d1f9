// Prints one benchmark document for profilers and memory probes: TYPE LINES OUT [REPEAT].
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "bench/bench_documents.hpp"
#include "foundation/preview_surface.hpp"

namespace {
long PeakRssKiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: %s TYPE LINES OUT.pdf|OUT.jsonl|preview [REPEAT]\n", argv[0]);
    return 2;
  }
  using namespace quorvel::bench;
  try {
    SetBenchCompany();
    const BenchDocument doc = MakeDocument(argv[1], std::atoi(argv[2]));
    const std::string out = argv[3];
    const int repeat = argc > 4 ? std::atoi(argv[4]) : 1;
    const long built = PeakRssKiB();
    const auto start = std::chrono::steady_clock::now();
    int pages = 0;
    for (int i = 0; i < repeat; ++i) {
      if (out == "preview") PrintToPreview(doc);
      else pages = PrintToFile(doc, out);
    }
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::printf("%s %s lines: %d pages, %.1f ms per document, peak RSS %ld KiB (%ld KiB after building)\n",
                argv[1], argv[2], pages, took.count() / repeat, PeakRssKiB(), built);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
  }
  return 0;
}
