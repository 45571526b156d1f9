// Throughput of measuring and wrapping: the inner loops of every layout.
#include <benchmark/benchmark.h>

#include "foundation/preview_surface.hpp"
#include "foundation/text_fitting.hpp"

namespace quorvel {
namespace {

const std::string kDescription =
    "Heavy-duty galvanised steel shelving unit, five adjustable shelves, 180 x 90 x 40 cm, "
    "load 175 kg per shelf, bolt-free assembly, supplied flat-packed with rubber feet and wall ties.";

void MeasureRepeatedly(benchmark::State& state, const std::string& text) {
  PreviewSurface s;
  for (auto _ : state) benchmark::DoNotOptimize(s.TextWidth(text));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

void BM_TextWidth(benchmark::State& state) { MeasureRepeatedly(state, kDescription); }
BENCHMARK(BM_TextWidth);

// The reference for Latin text: the plain sum of the face's advances that measuring was before
// shaped text existed. TextWidth of Latin text is held to within 1.2 times of it.
void BM_TextWidthReference(benchmark::State& state) {
  PreviewSurface s;
  for (auto _ : state)
    benchmark::DoNotOptimize(static_cast<double>(s.Font().Face().AdvanceUnits(kDescription)) *
                             TwipsPerUnit(s.Font().Face(), s.Font().Size()));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(kDescription.size()));
}
BENCHMARK(BM_TextWidthReference);

const std::string kArabic = "قلم حبر أزرق ناعم للكتابة اليومية في المكتب والمدرسة، علبة من عشرة أقلام، رقم الصنف 4471";

// A repeated Arabic text: shaped once, then answered from the cache of shaped lines.
void BM_TextWidthArabicRepeated(benchmark::State& state) { MeasureRepeatedly(state, kArabic); }
BENCHMARK(BM_TextWidthArabicRepeated);

// Arabic texts that are all different (more than the cache holds): each one is shaped afresh.
void BM_TextWidthArabicDistinct(benchmark::State& state) {
  PreviewSurface s;
  std::vector<std::string> texts;
  for (int i = 0; i < 10000; ++i) texts.push_back(kArabic + " " + std::to_string(i));
  size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(s.TextWidth(texts[next]));
    next = (next + 1) % texts.size();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(kArabic.size()));
}
BENCHMARK(BM_TextWidthArabicDistinct);

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
