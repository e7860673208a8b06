#include "controls/slider_scale.h"

#include <algorithm>
#include <cmath>

namespace vantrel {
namespace {

/// Of a step: what counts as lying on it, for sums of decimal fractions are not exact.
constexpr double kTolerance = 1e-6;
constexpr double kMostSteps = 1e9;

}  // namespace

int SliderScale::last() const {
  const double steps = std::ceil((upper - lower) * stepsPerUnit - kTolerance);
  return static_cast<int>(std::clamp(steps, 0.0, kMostSteps));
}

double SliderScale::value(int step) const {
  return std::min(lower + static_cast<double>(step) / stepsPerUnit, upper);
}

int SliderScale::closest(double value) const {
  return std::min(static_cast<int>(std::lround(position(value))), last());
}

int SliderScale::next(double value, bool up) const {
  const double here = position(value), nearest = std::round(here);
  double there = up ? std::floor(here) + 1 : std::ceil(here) - 1;
  if (std::abs(here - nearest) < kTolerance) there = nearest + (up ? 1 : -1);
  return std::clamp(static_cast<int>(there), 0, last());
}

double SliderScale::position(double value) const {
  // The bound comes first, so that it stands where the value is not a number.
  const double inside = std::min(upper, std::max(lower, value));
  return std::min((inside - lower) * stepsPerUnit, kMostSteps);
}

}  // namespace vantrel
