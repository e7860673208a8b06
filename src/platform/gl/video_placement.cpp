#include "platform/gl/video_placement.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantrel {
namespace {

/// A direction of the stored picture, as the displayed one has it.
struct StoredAxis {
  /// Its length in stored pixels and in square ones.
  double stored = 0, square = 0;
  /// The displayed picture runs against it.
  bool isFlipped = false;

  [[nodiscard]] bool isUsable() const {
    constexpr double kLongest = 1 << 24;
    return stored >= 1 && square >= 1 && square < kLongest;
  }
};

std::vector<float> positions(const PlacedAxis& axis, const StoredAxis& along, bool isMagnified) {
  std::vector<double> displayed;
  if (isMagnified) {
    for (const int64_t pixel : axis.sourcePixels())
      displayed.push_back(static_cast<double>(pixel) + 0.5);
  } else {
    for (int64_t pixel = axis.visible.begin; pixel < axis.visible.end; ++pixel)
      displayed.push_back(axis.source(static_cast<double>(pixel) + 0.5));
  }
  std::vector<float> result;
  for (const double position : displayed) {
    const double stored = std::clamp(position * along.stored / along.square, 0.0, along.stored);
    result.push_back(static_cast<float>(along.isFlipped ? along.stored - stored : stored));
  }
  return result;
}

}  // namespace

std::optional<VideoPlacement> VideoPlacement::of(const VideoPicture& picture,
                                                 const PictureView& view) {
  const AffineTransform& turn = picture.preferredTransform;
  const PlaneView& luma = picture.planes[0];
  VideoPlacement placement;
  placement.transposes = std::abs(turn.a) < std::abs(turn.b);
  StoredAxis columns{double(luma.width), std::round(picture.naturalSize.width), turn.a < 0};
  StoredAxis rows{double(luma.height), std::round(picture.naturalSize.height), turn.d < 0};
  if (placement.transposes) {
    std::swap(columns, rows);
    columns.isFlipped = turn.c < 0;
    rows.isFlipped = turn.b < 0;
  }
  if (!columns.isUsable() || !rows.isUsable()) return std::nullopt;
  const auto placed = PicturePlacement::of(view, static_cast<int64_t>(columns.square),
                                           static_cast<int64_t>(rows.square));
  if (!placed) return std::nullopt;
  const bool isMagnified = placed->isMagnified();
  placement.visible = placed->visible();
  placement.columns = positions(placed->x, columns, isMagnified);
  placement.rows = positions(placed->y, rows, isMagnified);
  placement.scaleX = placed->x.scale * columns.square / columns.stored;
  placement.scaleY = placed->y.scale * rows.square / rows.stored;
  if (placement.transposes) std::swap(placement.scaleX, placement.scaleY);
  placement.isOnSamples =
      isMagnified && columns.stored == columns.square && rows.stored == rows.square;
  return placement;
}

}  // namespace vantrel
