#include "platform/gl/picture_placement.h"

#include <algorithm>
#include <cmath>

namespace vantrel {
namespace {

/// What the arithmetic of a frame may take from half a device pixel.
constexpr double kRounding = 1e-6;
/// Farther away nothing can be visible, and whole numbers are not exact any more.
constexpr double kFarthest = 1e15;

std::optional<PlacedAxis> placedAxis(int64_t count, double start, double length,
                                     const Interval& shown) {
  if (!(std::abs(start) < kFarthest && length > 0 && length < kFarthest)) return std::nullopt;
  PlacedAxis axis{count, start, length / static_cast<double>(count), shown};
  if (!(axis.scale > 0)) return std::nullopt;
  const Interval picture = axis.device({0, count});
  axis.visible = {std::max(picture.begin, shown.begin), std::min(picture.end, shown.end)};
  if (axis.visible.isEmpty()) return std::nullopt;
  return axis;
}

/// The device pixels of one direction that can be seen at all.
Interval shownPixels(int target, bool onlyRetained, double from, double to) {
  if (!onlyRetained) return {0, target};
  if (!(std::abs(from) < kFarthest && std::abs(to) < kFarthest)) return {};
  return {std::max<int64_t>(0, deviceEdge(from)), std::min<int64_t>(target, deviceEdge(to))};
}

}  // namespace

int64_t deviceEdge(double position) {
  return static_cast<int64_t>(std::floor(position + 0.5 + kRounding));
}

Interval PlacedAxis::device(const Interval& source) const {
  const int64_t begin = deviceEdge(start + static_cast<double>(source.begin) * scale);
  const int64_t end = deviceEdge(start + static_cast<double>(source.end) * scale);
  if (source.end < count) return {begin, end};
  return {begin, std::max(end, deviceEdge(start) + 1)};
}

Interval PlacedAxis::visibleSource() const {
  const auto last = static_cast<double>(count - 1);
  const double begin = source(static_cast<double>(visible.begin) - 1);
  const double end = source(static_cast<double>(visible.end) + 1);
  return {static_cast<int64_t>(std::clamp(std::floor(begin), 0.0, last)),
          static_cast<int64_t>(std::clamp(std::floor(end), 0.0, last)) + 1};
}

std::vector<int64_t> PlacedAxis::sourcePixels() const {
  std::vector<int64_t> pixels;
  pixels.reserve(static_cast<size_t>(visible.end - visible.begin));
  int64_t pixel = visibleSource().begin;
  for (int64_t at = visible.begin; at < visible.end; ++at) {
    while (pixel + 1 < count && device({pixel, pixel + 1}).end <= at)
      ++pixel;
    pixels.push_back(pixel);
  }
  return pixels;
}

std::optional<PicturePlacement> PicturePlacement::of(const PictureView& view, int64_t width,
                                                     int64_t height) {
  const QRectF& kept = view.retained;
  const bool onlyRetained = view.excludedOpacity <= 0;
  const auto x =
      placedAxis(width, view.frame.left(), view.frame.width(),
                 shownPixels(view.target.width(), onlyRetained, kept.left(), kept.right()));
  const auto y =
      placedAxis(height, view.frame.top(), view.frame.height(),
                 shownPixels(view.target.height(), onlyRetained, kept.top(), kept.bottom()));
  if (!x || !y) return std::nullopt;
  return PicturePlacement{*x, *y};
}

bool PicturePlacement::isMagnified() const {
  return std::min(x.scale, y.scale) > 1 - kRounding;
}

PixelRect PicturePlacement::visible() const {
  return {x.visible.begin, y.visible.begin, x.visible.end - x.visible.begin,
          y.visible.end - y.visible.begin};
}

PixelRect PicturePlacement::device(const PixelRect& source) const {
  const auto side = [](const PlacedAxis& axis, int64_t begin, int64_t length) {
    const Interval all = axis.device({begin, begin + length});
    return Interval{std::max(all.begin, axis.visible.begin), std::min(all.end, axis.visible.end)};
  };
  const Interval columns = side(x, source.x, source.width);
  const Interval rows = side(y, source.y, source.height);
  if (columns.isEmpty() || rows.isEmpty()) return {};
  return {columns.begin, rows.begin, columns.end - columns.begin, rows.end - rows.begin};
}

}  // namespace vantrel
