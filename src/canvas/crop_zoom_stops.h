#pragma once

#include <vector>

/// The ladder of zoom values: four stops to each doubling, anchored at 1.0. A zoom is in device
/// pixels for each source pixel.
namespace vantrel::CropZoomStops {

inline constexpr double kMinimum = 0.1;
inline constexpr double kMaximum = 10.0;

/// In ascending order, both ends included.
[[nodiscard]] const std::vector<double>& values();

/// The next stop in that direction; the end of the range when there is none. A zoom within a
/// millionth of a stop counts as being on it.
[[nodiscard]] double next(double from, bool increasing);

}  // namespace vantrel::CropZoomStops
