#pragma once

// Private to this folder.

#include <vector>

#include "platform/gl/picture_view.h"
#include "platform/movie/video_picture.h"

namespace vantrel {

/// How one axis of the framebuffer runs over a video's stored picture.
struct VideoAxis {
  /// The device pixels that show the picture, the last one not included.
  int first = 0, end = 0;
  /// For each of them where in the stored picture it lies, in stored pixels from its edge.
  std::vector<float> positions;
  /// Device pixels for each displayed and for each stored one.
  double displayedScale = 1, storedScale = 1;

  [[nodiscard]] bool isEmpty() const { return first >= end; }
};

/// Where the device pixels of a view lie in the stored picture, turned upright and with its pixels
/// made square. Magnified, all device pixels of a displayed pixel lie at its centre.
struct VideoPlacement {
  /// `transposes`: columns run along the stored picture's height.
  bool transposes = false;
  VideoAxis columns, rows;

  /// Nothing for pictures, frames and targets without a size.
  [[nodiscard]] static VideoPlacement of(const VideoPicture& picture, const PictureView& view);

  [[nodiscard]] bool isEmpty() const { return columns.isEmpty() || rows.isEmpty(); }
  /// Along the stored picture's width and height.
  [[nodiscard]] const VideoAxis& alongWidth() const { return transposes ? rows : columns; }
  [[nodiscard]] const VideoAxis& alongHeight() const { return transposes ? columns : rows; }
  /// Whether each position is the centre of a stored pixel, but for rounding.
  [[nodiscard]] bool isOnSamples() const;
};

}  // namespace vantrel
