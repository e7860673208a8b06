#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "platform/movie/movie.h"
#include "platform/movie/plane_view.h"
#include "platform/movie/video_color.h"

namespace vantrel {

/// One picture of a video as it was decoded: its planes, and all that is needed to show them. It is
/// immutable and shared; any thread may read it.
struct VideoPicture {
  enum class Model : uint8_t { Gray, Yuv, Rgb };

  Model model = Model::Yuv;
  /// Gray: luma alone; Yuv: Y, Cb, Cr; Rgb: red, green, blue. The memory belongs to `owner`.
  std::array<PlaneView, 3> planes;
  /// Bits of each sample, 8 to 16; above 8 each takes two bytes, at their low end.
  int depth = 8;
  /// A chroma sample stands for 2^shift pixels.
  int chromaShiftX = 0, chromaShiftY = 0;
  ChromaSiting chromaSiting = ChromaSiting::Left;
  /// Completed.
  ColorTags color;
  bool isFullRange = false;
  HdrMetadata hdrMetadata;

  /// The stored picture with its pixels made square, before any turn.
  PictureSize naturalSize;
  /// From there to the displayed picture, which may come to lie at negative coordinates: a quarter
  /// turn or a mirror of one.
  AffineTransform preferredTransform;

  std::shared_ptr<const void> owner;

  /// Of the displayed picture, in square pixels.
  [[nodiscard]] PictureSize displayedSize() const {
    const bool isTurned = preferredTransform.a == 0;
    return isTurned ? PictureSize{naturalSize.height, naturalSize.width} : naturalSize;
  }
  [[nodiscard]] int planeCount() const { return model == Model::Gray ? 1 : 3; }
};

}  // namespace vantrel
