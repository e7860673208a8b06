#include "platform/gl/video_placement.h"

#include <algorithm>
#include <cmath>

namespace vantrel {
namespace {

/// Zooms closer than this to a whole displayed pixel are that.
constexpr double kTolerance = 1e-9;

struct AxisView {
  /// Of the frame, in device pixels.
  double start = 0, length = 0;
  /// Device pixels of the framebuffer.
  int target = 0;
  /// Pixels of the displayed and of the stored picture.
  double displayed = 0, stored = 0;
  bool isFlipped = false;

  [[nodiscard]] bool isUsable() const {
    return std::isfinite(start) && std::isfinite(length) && length > 0 && target > 0 &&
           displayed >= 1 && stored >= 1;
  }
  [[nodiscard]] double scale() const { return length / displayed; }
  /// Where displayed pixel `x` begins.
  [[nodiscard]] double edge(double x) const { return std::round(start + x * scale()); }

  /// The displayed pixel that device pixel `pixel` shows.
  [[nodiscard]] double shownAt(double pixel) const {
    double x = std::clamp(std::floor((pixel + 0.5 - start) / scale()), 0.0, displayed - 1);
    while (x > 0 && edge(x) > pixel)
      --x;
    while (x < displayed - 1 && edge(x + 1) <= pixel)
      ++x;
    return x;
  }
};

VideoAxis axisOf(const AxisView& view) {
  VideoAxis axis;
  if (!view.isUsable()) return axis;
  axis.displayedScale = view.scale();
  axis.storedScale = view.length / view.stored;
  const double begin = view.edge(0), end = std::max(view.edge(view.displayed), begin + 1);
  axis.first = static_cast<int>(std::clamp<double>(begin, 0, view.target));
  axis.end = static_cast<int>(std::clamp<double>(end, 0, view.target));
  const bool isMagnified = axis.displayedScale >= 1 - kTolerance;
  const double storedPerDisplayed = view.stored / view.displayed;
  for (int pixel = axis.first; pixel < axis.end; ++pixel) {
    const double displayed =
        isMagnified ? view.shownAt(pixel) + 0.5 : (pixel + 0.5 - view.start) / axis.displayedScale;
    const double stored = std::clamp(displayed * storedPerDisplayed, 0.0, view.stored);
    axis.positions.push_back(static_cast<float>(view.isFlipped ? view.stored - stored : stored));
  }
  return axis;
}

bool isOnSamples(const VideoAxis& axis) {
  return axis.displayedScale >= 1 - kTolerance && axis.displayedScale == axis.storedScale;
}

}  // namespace

VideoPlacement VideoPlacement::of(const VideoPicture& picture, const PictureView& view) {
  const AffineTransform& turn = picture.preferredTransform;
  const PlaneView& luma = picture.planes[0];
  const PictureSize natural = picture.naturalSize;
  VideoPlacement placement;
  placement.transposes = std::abs(turn.a) < std::abs(turn.b);
  AxisView columns{view.frame.x(), view.frame.width(), view.target.width(),
                   natural.width,  double(luma.width), turn.a < 0};
  AxisView rows{view.frame.y(), view.frame.height(), view.target.height(),
                natural.height, double(luma.height), turn.d < 0};
  if (placement.transposes) {
    std::swap(columns.displayed, rows.displayed);
    std::swap(columns.stored, rows.stored);
    columns.isFlipped = turn.c < 0;
    rows.isFlipped = turn.b < 0;
  }
  placement.columns = axisOf(columns);
  placement.rows = axisOf(rows);
  return placement;
}

bool VideoPlacement::isOnSamples() const {
  return vantrel::isOnSamples(columns) && vantrel::isOnSamples(rows);
}

}  // namespace vantrel
