#pragma once

#include <cstdint>

namespace vantrel {

/// When a save that runs is worth telling of: after a while, and earlier if it is clear by then
/// that much is still to come. What is over in a moment never flashes up.
class SavePatience final {
 public:
  /// Milliseconds.
  static constexpr int64_t kShortest = 300, kLongest = 1000, kWorthTelling = 700;

  /// After `elapsed` milliseconds, of a save of which `fraction` is done.
  [[nodiscard]] static bool isOver(int64_t elapsed, double fraction) {
    if (elapsed >= kLongest) return true;
    if (elapsed < kShortest || fraction <= 0) return false;
    const double toCome = static_cast<double>(elapsed) * (1 - fraction) / fraction;
    return toCome >= static_cast<double>(kWorthTelling);
  }
};

}  // namespace vantrel
