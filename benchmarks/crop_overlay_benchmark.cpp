#include <benchmark/benchmark.h>

#include <array>

#include "canvas/crop_overlay.h"

namespace vantrel {
namespace {

CropOverlay overlay() {
  CropOverlay overlay;
  overlay.setProjection(CanvasProjection({12'000, 9000}, {-300, -200}, 0.1375));
  overlay.setCrop({2501, 2301, 3001, 2001});
  return overlay;
}

/// Asks of points in turn: on a handle, on a band, inside the crop, and outside of it, which takes
/// longest.
template <typename Answer>
void askOfPoints(benchmark::State& state, Answer (CropOverlay::*question)(const QPointF&) const) {
  const CropOverlay asked = overlay();
  const QRectF selection = asked.selection();
  const std::array points{selection.topLeft() - QPointF(5, 5), selection.topLeft() + QPointF(60, 1),
                          selection.center(), selection.bottomRight() + QPointF(50, 50)};
  size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize((asked.*question)(points.at(next++ % points.size())));
  }
}

void overlayHitTest(benchmark::State& state) {
  askOfPoints(state, &CropOverlay::gripAt);
}

void overlayCursor(benchmark::State& state) {
  askOfPoints(state, &CropOverlay::cursorAt);
}

/// One step of a drag of the bottom right corner, with and without its ratio.
void overlayDragStep(benchmark::State& state) {
  CropOverlay dragged = overlay();
  const QPointF corner = dragged.selection().bottomRight() + QPointF(6, 6);
  if (!dragged.press(corner)) state.SkipWithError("the press has missed the corner");
  const bool keepsRatio = state.range(0) != 0;
  double x = 0;
  for (auto _ : state) {
    x = x > 200 ? -200 : x + 0.7;
    benchmark::DoNotOptimize(dragged.drag(corner + QPointF(x, x / 3), keepsRatio));
  }
}

void overlayRectangles(benchmark::State& state) {
  const CropOverlay drawn = overlay();
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        CropOverlayGeometry::rectangles(drawn.projection(), drawn.crop(), 1.5));
  }
}

BENCHMARK(overlayHitTest);
BENCHMARK(overlayCursor);
BENCHMARK(overlayDragStep)->ArgName("ratio")->Arg(0)->Arg(1);
BENCHMARK(overlayRectangles);

}  // namespace
}  // namespace vantrel
