#include <benchmark/benchmark.h>

#include "canvas/canvas_camera.h"

namespace vantrel {
namespace {

const QSizeF kSource(12'000, 9000);

CanvasCamera camera() {
  CanvasCamera camera;
  camera.setDevicePixelRatio(1.5);
  camera.setViewport({1280, 800});
  camera.update({.sourceSize = kSource}, true, false, 0);
  return camera;
}

/// A window that grows and shrinks around a fitted picture.
void cameraLayout(benchmark::State& state) {
  CanvasCamera resized = camera();
  bool isWide = false;
  for (auto _ : state) {
    isWide = !isWide;
    resized.setViewport(isWide ? QSizeF(1281, 800) : QSizeF(1280, 800));
    benchmark::DoNotOptimize(resized.projection());
  }
}

void cameraTick(benchmark::State& state) {
  CanvasCamera moved = camera();
  moved.update({.sourceSize = kSource, .zoom = 4, .fit = false, .request = 1}, false, false, 0);
  double now = 0;
  for (auto _ : state) {
    now = now > 0.2 ? 0.01 : now + 0.001;
    moved.tick(now);
    benchmark::DoNotOptimize(moved.projection());
  }
  if (!moved.isMoving()) state.SkipWithError("the move has ended");
}

void cameraZoomAround(benchmark::State& state) {
  CanvasCamera zoomed = camera();
  bool isIn = false;
  for (auto _ : state) {
    isIn = !isIn;
    benchmark::DoNotOptimize(zoomed.zoomAround({300.5, 200.5}, isIn ? 1.1275 : 1 / 1.1275));
    benchmark::DoNotOptimize(zoomed.projection());
  }
}

BENCHMARK(cameraLayout);
BENCHMARK(cameraTick);
BENCHMARK(cameraZoomAround);

}  // namespace
}  // namespace vantrel
