#pragma once

#include <QSizeF>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "media/image_source.h"
#include "platform/movie/movie.h"

namespace vantrel {

/// An open file with its facts: an image has an image source, a video a movie.
struct SourceFile {
  std::filesystem::path path;
  std::optional<ImageSource> imageSource;
  std::optional<Movie> movie;
  /// Upright, in source pixels.
  QSizeF sourceSize{0, 0};
  /// Estimated megabits per second; 0 for an image.
  double sourceMbps = 0;
  /// Nominal frames per second; 0 for an image.
  double sourceFPS = 0;
  int64_t sourceBytes = 0;
  bool sourceIsHDR = false;
  /// Seconds; 0 for an image, not a number for a video that does not tell it.
  double duration = 0;

  /// `sourceMbps`, or the default of an export where that is no bitrate.
  [[nodiscard]] double originalBitrate() const;
};

}  // namespace vantrel
