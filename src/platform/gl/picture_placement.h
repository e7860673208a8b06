#pragma once

// Private to this folder.

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/gl/picture_view.h"
#include "platform/image/bitmap.h"

namespace vantrel {

/// The device pixel at whose left edge a line at `position` is drawn: the nearest one; half a pixel
/// goes to the right, also where it has become a little less by rounding.
[[nodiscard]] int64_t deviceEdge(double position);

/// Half open.
struct Interval {
  int64_t begin = 0, end = 0;
  [[nodiscard]] bool isEmpty() const { return end <= begin; }
  friend bool operator==(const Interval&, const Interval&) = default;
};

/// One direction of a picture that lies on a framebuffer: source pixels and device pixels.
struct PlacedAxis {
  /// Source pixels.
  int64_t count = 0;
  /// Where the first one begins, and device pixels for each.
  double start = 0, scale = 1;
  /// The device pixels that are to be drawn, inside those of the picture.
  Interval visible;

  /// The device pixels of some source pixels, within the picture. Neighbouring intervals touch; all
  /// of the picture together has at least one.
  [[nodiscard]] Interval device(const Interval& source) const;
  /// At a position in device pixels.
  [[nodiscard]] double source(double device) const { return (device - start) / scale; }
  /// The source pixels that the visible device pixels may show, within the picture, and a few more.
  [[nodiscard]] Interval visibleSource() const;
  /// For each visible device pixel the source pixel that it shows when magnified.
  [[nodiscard]] std::vector<int64_t> sourcePixels() const;
};

/// How a picture lies on a framebuffer.
struct PicturePlacement {
  PlacedAxis x, y;

  /// What is visible of a picture of `width` × `height` pixels, each at least 1; absent where
  /// nothing is, or where the view holds numbers that are none.
  [[nodiscard]] static std::optional<PicturePlacement> of(const PictureView& view, int64_t width,
                                                          int64_t height);

  /// Whether a source pixel takes a device pixel or more.
  [[nodiscard]] bool isMagnified() const;
  /// The visible device pixels.
  [[nodiscard]] PixelRect visible() const;
  /// The visible device pixels of a part of the picture.
  [[nodiscard]] PixelRect device(const PixelRect& source) const;
};

}  // namespace vantrel
