#pragma once

// Private to this folder.

#include <vector>

#include "platform/movie/plane_view.h"

namespace vantrel {

/// Makes planes smaller by whole steps, or only lays their rows close together. Keeps its memory
/// from plane to plane. One thread at a time.
class PlaneReduction final {
 public:
  /// Steps of one axis.
  static constexpr int kMostSteps = 8;

  /// Each sample is the mean of 2^stepsX × 2^stepsY, or of what there is at the right and the lower
  /// edge. What it gives holds until the next call; its rows have no gaps.
  [[nodiscard]] PlaneView reduced(const PlaneView& plane, int stepsX, int stepsY);

  /// `size` samples in groups of 2^steps.
  [[nodiscard]] static int reducedSize(int size, int steps) {
    return (size + (1 << steps) - 1) >> steps;
  }

 private:
  std::vector<uint8_t> m_samples;
  std::vector<uint32_t> m_sums;
};

}  // namespace vantrel
