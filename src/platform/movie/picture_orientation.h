#pragma once

#include <optional>

#include "platform/movie/movie_reader.h"

namespace vantrel {

/// One of the eight ways to lay a picture: mirrored in its own space, then transposed.
struct PictureOrientation {
  bool flipsX = false, flipsY = false, transposes = false;
  [[nodiscard]] bool isUpright() const { return !flipsX && !flipsY && !transposes; }
  friend bool operator==(const PictureOrientation&, const PictureOrientation&) = default;
};

/// The rectangle of the source that an output shows, in pixels of the source with square pixels,
/// and how it is laid.
struct SourceRegion {
  int x = 0, y = 0, width = 0, height = 0;
  PictureOrientation orientation;
  friend bool operator==(const SourceRegion&, const SourceRegion&) = default;
};

/// What an output of these settings shows of a source of `naturalSize`. None when the transform is
/// no quarter turn or mirror with a shift by whole pixels, when the output's size is not even and
/// at least 2, or when the output reaches beyond the source.
[[nodiscard]] std::optional<SourceRegion> sourceRegion(const VideoOutputSettings& settings,
                                                       PictureSize naturalSize);

}  // namespace vantrel
