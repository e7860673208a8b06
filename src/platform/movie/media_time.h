#pragma once

#include <cstdint>
#include <limits>

namespace vantrel {

/// A time or a duration as a whole number of ticks. Not valid without a timescale.
struct MediaTime {
  int64_t ticks = 0;
  /// Ticks per second; 0 in a time that is not known.
  int32_t timescale = 0;

  [[nodiscard]] bool isValid() const { return timescale > 0; }
  /// Not a number if not valid.
  [[nodiscard]] double seconds() const {
    return isValid() ? static_cast<double>(ticks) / timescale
                     : std::numeric_limits<double>::quiet_NaN();
  }

  friend bool operator==(const MediaTime&, const MediaTime&) = default;
};

}  // namespace vantrel
