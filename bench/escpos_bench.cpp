// Receipts to ESC/POS bytes per second, side by side with the same receipt printed to PNG.
#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>

#include "bench/bench_documents.hpp"

namespace quorvel::bench {

namespace {

using Clock = std::chrono::steady_clock;

double SecondsOf(const std::function<void()>& work) {
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// Each iteration prints the receipt twice, in turn: to a .escpos file (lay out, render at 576
// dots, threshold, encode, write) and through the PNG device (lay out, render at 96 dpi, encode,
// write). Taking turns keeps both under the same machine load, so their ratio holds however
// busy the machine is.
void EscPosBesidePng(benchmark::State& state) {
  SetBenchCompany();
  const BenchDocument receipt = MakeDocument("receipt", SmallLines("receipt"));
  const std::string dir = BenchTempDir();
  const std::string escpos = dir + "/receipt.escpos", png = dir + "/receipt.png";
  PrintToFile(receipt, escpos);  // fonts and caches loaded before the clock runs
  double escpos_seconds = 0, png_seconds = 0;
  for (auto _ : state) {
    escpos_seconds += SecondsOf([&] { PrintToFile(receipt, escpos); });
    png_seconds += SecondsOf([&] { PrintToFile(receipt, png); });
  }
  const double receipts = static_cast<double>(state.iterations());
  state.counters["escpos_receipts_per_s"] = receipts / escpos_seconds;
  state.counters["png_receipts_per_s"] = receipts / png_seconds;
  state.counters["escpos_bytes"] = static_cast<double>(std::filesystem::file_size(escpos));
  state.counters["ratio_escpos_to_png"] = escpos_seconds / png_seconds;
  std::filesystem::remove_all(dir);
}

const bool kRegistered = [] {
  benchmark::RegisterBenchmark("EscPos/receipt_beside_png", EscPosBesidePng)->Unit(benchmark::kMillisecond)->UseRealTime();
  return true;
}();

}  // namespace

}  // namespace quorvel::bench
