// Throughput of measuring and wrapping: the inner loops of every layout.
#include <benchmark/benchmark.h>

#include "foundation/preview_surface.hpp"
#include "foundation/text_fitting.hpp"

namespace quorvel {
namespace {

const std::string kDescription =
    "Heavy-duty galvanised steel shelving unit, five adjustable shelves, 180 x 90 x 40 cm, "
    "load 175 kg per shelf, bolt-free assembly, supplied flat-packed with rubber feet and wall ties.";

void BM_TextWidth(benchmark::State& state) {
  PreviewSurface s;
  for (auto _ : state) benchmark::DoNotOptimize(s.TextWidth(kDescription));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(kDescription.size()));
}
BENCHMARK(BM_TextWidth);

void BM_WrapText(benchmark::State& state) {
  PreviewSurface s;
  std::vector<std::string> lines;
  for (auto _ : state) {
    std::string text = kDescription;
    int16_t width = 4300;
    WrapText(s, text, width, lines);
    benchmark::DoNotOptimize(lines.data());
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_WrapText);

void BM_AdjustedText(benchmark::State& state) {
  PreviewSurface s;
  for (auto _ : state) {
    std::string text = kDescription;
    int16_t length = 1500;
    benchmark::DoNotOptimize(AdjustedText(s, text, length));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_AdjustedText);

}  // namespace
}  // namespace quorvel
