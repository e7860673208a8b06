#include "platform/gl/video_reduction.h"

#include <algorithm>
#include <cmath>

#include "platform/gl/plane_reduction.h"

namespace vantrel {
namespace {

int stepsFor(double scale) {
  // A scale this little above a power of two counts as that.
  constexpr double kTolerance = 1e-6;
  if (!(scale < 1)) return 0;
  const double steps = std::floor(std::log2(1 / scale) + kTolerance);
  return static_cast<int>(std::min<double>(steps, PlaneReduction::kMostSteps));
}

int64_t bytesNeeded(const VideoPicture& picture, const VideoReduction& reduction) {
  int64_t bytes = 0;
  for (int i = 0; i < picture.planeCount(); ++i) {
    const PlaneView& plane = picture.planes[static_cast<size_t>(i)];
    const VideoReduction ofPlane = reduction.ofPlane(picture, i);
    bytes += int64_t{PlaneReduction::reducedSize(plane.width, ofPlane.stepsX)} *
             PlaneReduction::reducedSize(plane.height, ofPlane.stepsY) * plane.bytesPerSample;
  }
  return bytes;
}

}  // namespace

VideoReduction VideoReduction::of(const VideoPicture& picture, double scaleX, double scaleY,
                                  const Limits& limits) {
  const PlaneView& luma = picture.planes[0];
  VideoReduction reduction{stepsFor(scaleX), stepsFor(scaleY)};
  const auto isTooLong = [&limits](int size, int steps) {
    return steps < PlaneReduction::kMostSteps &&
           PlaneReduction::reducedSize(size, steps) > limits.textureSide;
  };
  while (isTooLong(luma.width, reduction.stepsX))
    ++reduction.stepsX;
  while (isTooLong(luma.height, reduction.stepsY))
    ++reduction.stepsY;
  while (reduction.stepsX < PlaneReduction::kMostSteps &&
         reduction.stepsY < PlaneReduction::kMostSteps &&
         bytesNeeded(picture, reduction) > limits.bytes) {
    ++reduction.stepsX;
    ++reduction.stepsY;
  }
  return reduction;
}

VideoReduction VideoReduction::ofPlane(const VideoPicture& picture, int plane) const {
  if (plane == 0) return *this;
  return {std::max(0, stepsX - picture.chromaShiftX), std::max(0, stepsY - picture.chromaShiftY)};
}

}  // namespace vantrel
