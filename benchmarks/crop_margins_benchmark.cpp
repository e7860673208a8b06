#include <benchmark/benchmark.h>

#include <QSizeF>

#include "model/crop_margins.h"

namespace vantrel {
namespace {

constexpr int kCalls = 1'000'000;

/// A drag of each edge in turn over an odd source, so that every branch of the rule is taken.
void setMillionMargins(benchmark::State& state) {
  const QSizeF source(7681, 4321);
  const int64_t multiple = state.range(0);
  for (auto _ : state) {
    CropMargins crop = CropMargins::fullImage(source, multiple);
    for (int call = 0; call < kCalls; ++call) {
      const CropMargins::Edge edge = CropMargins::kEdges[static_cast<size_t>(call % 4)];
      crop.set(edge, call % 9000 - 500, source, multiple);
    }
    benchmark::DoNotOptimize(crop);
  }
  state.SetItemsProcessed(state.iterations() * kCalls);
}

BENCHMARK(setMillionMargins)->ArgName("step")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantrel
