#pragma once

// Private to this folder.

#include <cstdint>

#include "platform/movie/video_picture.h"

namespace vantrel {

/// By how many halvings the planes of a video are made smaller before they become textures, along
/// the stored picture's width and height.
struct VideoReduction {
  struct Limits {
    /// Samples of a side of a texture.
    int textureSide = 0;
    /// Of all planes.
    int64_t bytes = 0;
  };

  int stepsX = 0, stepsY = 0;

  /// Leaves at most two samples for a device pixel, which are as many as a linear filter reads, and
  /// no more than the limits let. Scales are device pixels for each stored one.
  [[nodiscard]] static VideoReduction of(const VideoPicture& picture, double scaleX, double scaleY,
                                         const Limits& limits);

  /// Of one plane: chroma that is coarse already is only made as coarse as luma.
  [[nodiscard]] VideoReduction ofPlane(const VideoPicture& picture, int plane) const;

  friend bool operator==(const VideoReduction&, const VideoReduction&) = default;
};

}  // namespace vantrel
