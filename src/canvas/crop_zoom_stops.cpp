#include "canvas/crop_zoom_stops.h"

#include <algorithm>
#include <cmath>

namespace vantrel::CropZoomStops {
namespace {

constexpr double kTolerance = 1e-6;
constexpr int kStopsPerDoubling = 4;

std::vector<double> makeValues() {
  const int first = static_cast<int>(std::ceil(std::log2(kMinimum) * kStopsPerDoubling));
  const int last = static_cast<int>(std::floor(std::log2(kMaximum) * kStopsPerDoubling));
  std::vector<double> stops{kMinimum};
  for (int index = first; index <= last; ++index) {
    const double stop = std::pow(2.0, static_cast<double>(index) / kStopsPerDoubling);
    if (stop > kMinimum && stop < kMaximum) stops.push_back(stop);
  }
  stops.push_back(kMaximum);
  return stops;
}

}  // namespace

const std::vector<double>& values() {
  static const std::vector<double> stops = makeValues();
  return stops;
}

double next(double from, bool increasing) {
  const std::vector<double>& stops = values();
  if (increasing) {
    const auto stop = std::upper_bound(stops.begin(), stops.end(), from + kTolerance);
    return stop == stops.end() ? kMaximum : *stop;
  }
  const auto stop = std::lower_bound(stops.begin(), stops.end(), from - kTolerance);
  return stop == stops.begin() ? kMinimum : *std::prev(stop);
}

}  // namespace vantrel::CropZoomStops
