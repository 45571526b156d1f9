// The benchmark program: Google Benchmark's console report, then a summary with the ratios.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include "bench/bench_documents.hpp"
#include "bench/bench_summary.hpp"

namespace quorvel::bench {

namespace {

double StatusKiB(const std::string& key) {
  std::ifstream in("/proc/self/status");
  std::string line;
  while (std::getline(in, line))
    if (line.rfind(key + ":", 0) == 0) return std::stod(line.substr(key.size() + 1));
  return 0;
}

// What the summary needs of one benchmark: seconds per iteration and its counters.
struct Result {
  double seconds = 0;      // wall time
  double cpu_seconds = 0;  // this process's CPU time: steadier on a shared machine
  std::map<std::string, double> counters;
};

class SummaryReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      // With --benchmark_repetitions the median stands for the benchmark; otherwise its one run.
      const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
      if (run.error_occurred || run.iterations == 0 || !(median || run.run_type == Run::RT_Iteration)) continue;
      // The registered name, without the "/real_time" and "/min_time:" decorations.
      const std::string name = run.run_name.function_name;
      if (!median && medians_.count(name)) continue;
      if (median) medians_.insert(name);
      Result& r = results_[name];
      r.seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
      r.cpu_seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
      for (const auto& [name, counter] : run.counters) r.counters[name] = counter.value;
    }
  }

  void PrintSummary() const {
    std::printf("\nSummary: ratio = time of the full print to PDF / time of the cairo replay of the same\n"
                "pages (wall time, and CPU time of this process, which other load disturbs less)\n");
    std::printf("%-20s %10s %12s %14s %11s %10s\n", "document", "preview/s", "PDF pages/s", "floor pages/s",
                "ratio wall", "ratio CPU");
    for (const std::string& type : DocumentTypeNames())
      for (const char* size : {"small", "large"}) PrintRow(type + "/" + size);
    const Result* small = Find("Scale/statement/2000");
    const Result* large = Find("Scale/statement/20000");
    if (small && large) {
      std::printf("\nStatement scaling: 2,000 lines %.1f ms, 20,000 lines %.1f ms: %.2f times (linear: 10)\n",
                  small->seconds * 1e3, large->seconds * 1e3, large->seconds / small->seconds);
      std::printf("Memory while printing: 2,000 lines +%.1f MiB, 20,000 lines +%.1f MiB over the resident set before\n",
                  Counter(*small, "print_growth_MiB"), Counter(*large, "print_growth_MiB"));
    }
    PrintTextWidthSummary();
    PrintDeviceSummary();
    if (const Result* process = Find("Process/receipt"))
      std::printf("quorvel print of the sample receipt, whole process: %.1f ms\n", process->seconds * 1e3);
  }

 private:
  void PrintTextWidthSummary() const {
    const Result* latin = Find("BM_TextWidth");
    const Result* reference = Find("BM_TextWidthReference");
    if (latin && reference && reference->cpu_seconds > 0)
      std::printf("\nTextWidth of a Latin description: %.0f ns, plain advance sum %.0f ns: ratio %.2f (CPU)\n",
                  latin->cpu_seconds * 1e9, reference->cpu_seconds * 1e9, latin->cpu_seconds / reference->cpu_seconds);
    const Result* repeated = Find("BM_TextWidthArabicRepeated");
    const Result* distinct = Find("BM_TextWidthArabicDistinct");
    if (repeated && distinct)
      std::printf("TextWidth of an Arabic description: %.0f ns repeated (cached), %.0f ns each new text (shaped)\n",
                  repeated->cpu_seconds * 1e9, distinct->cpu_seconds * 1e9);
  }

  // The direct PDF device against cairo's on the same recorded pages (CPU time), and its size.
  void PrintDeviceSummary() const {
    std::printf("\nDirect PDF device (pdf) against cairo's (pdf-cairo), same pages, CPU time of this process\n");
    std::printf("%-16s %6s %14s %14s %9s %9s\n", "case", "pages", "pdf pages/s", "cairo pages/s", "speed-up",
                "size");
    for (const auto& [name, type] : DeviceCases()) {
      const Result* direct = Find("Device/pdf/" + name);
      const Result* cairo = Find("Device/pdf-cairo/" + name);
      if (!direct || !cairo || direct->cpu_seconds <= 0) continue;
      const double pages = Counter(*direct, "pages_per_doc");
      std::printf("%-16s %6.0f %14.1f %14.1f %8.2fx %8.2fx\n", name.c_str(), pages, pages / direct->cpu_seconds,
                  pages / cairo->cpu_seconds, cairo->cpu_seconds / direct->cpu_seconds,
                  Counter(*direct, "bytes") / Counter(*cairo, "bytes"));
    }
    // The full print of a large document against the direct device replaying its pages.
    for (const auto& [suffix, replay] : {std::pair{"invoice/large", "invoice500"}, std::pair{"statement/large", "statement2000"}}) {
      const Result* print = Find(std::string("Pdf/") + suffix);
      const Result* own = Find(std::string("Device/pdf/") + replay);
      if (print && own && own->cpu_seconds > 0)
        std::printf("full print / own replay, %s: %.2f\n", suffix, print->cpu_seconds / own->cpu_seconds);
    }
  }

  const Result* Find(const std::string& name) const {
    auto it = results_.find(name);
    return it == results_.end() ? nullptr : &it->second;
  }
  static double Counter(const Result& r, const std::string& name) {
    auto it = r.counters.find(name);
    return it == r.counters.end() ? 0 : it->second;
  }
  void PrintRow(const std::string& suffix) const {
    const Result* preview = Find("Preview/" + suffix);
    const Result* pdf = Find("Pdf/" + suffix);
    const Result* floor = Find("Floor/" + suffix);
    if (!preview && !pdf && !floor) return;
    auto cell = [](const Result* r, const char* counter) {
      return r ? Counter(*r, counter) : 0.0;
    };
    const bool both = pdf && floor && floor->seconds > 0 && floor->cpu_seconds > 0;
    std::printf("%-20s %10.1f %12.1f %14.1f %11.2f %10.2f\n", suffix.c_str(), cell(preview, "docs"),
                cell(pdf, "pages"), cell(floor, "pages"), both ? pdf->seconds / floor->seconds : 0,
                both ? pdf->cpu_seconds / floor->cpu_seconds : 0);
  }

  std::map<std::string, Result> results_;
  std::set<std::string> medians_;
};

}  // namespace

void ResetPeakRss() {
  std::ofstream clear("/proc/self/clear_refs");
  clear << "5";
}
double PeakRssMiB() { return StatusKiB("VmHWM") / 1024; }
double CurrentRssMiB() { return StatusKiB("VmRSS") / 1024; }

}  // namespace quorvel::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  quorvel::bench::SummaryReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintSummary();
  benchmark::Shutdown();
  return 0;
}
