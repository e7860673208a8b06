#pragma once

// Private to this folder.

#include <optional>
#include <vector>

#include "platform/gl/picture_placement.h"
#include "platform/movie/video_picture.h"

namespace vantrel {

/// Where the visible device pixels lie in the stored picture of a video, which is turned upright
/// and has its pixels made square. Magnified, all device pixels of a displayed pixel lie at its
/// centre.
struct VideoPlacement {
  /// The visible device pixels.
  PixelRect visible;
  /// For each visible column and row where it lies along the stored picture, in stored pixels from
  /// its left or upper edge.
  std::vector<float> columns, rows;
  /// Columns run along the stored picture's height.
  bool transposes = false;
  /// Device pixels for each stored one, along the stored picture's width and height.
  double scaleX = 1, scaleY = 1;
  /// Whether each position is the centre of a stored pixel.
  bool isOnSamples = false;

  /// Absent where nothing is visible, or for pictures and views with sizes that are none.
  [[nodiscard]] static std::optional<VideoPlacement> of(const VideoPicture& picture,
                                                        const PictureView& view);
};

}  // namespace vantrel
