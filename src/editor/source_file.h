#pragma once

#include <QSizeF>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "media/image_source.h"

namespace vantrel {

/// An open file with its facts. A video has no image source.
struct SourceFile {
  std::filesystem::path path;
  std::optional<ImageSource> imageSource;
  /// Upright, in source pixels.
  QSizeF sourceSize{0, 0};
  /// Estimated megabits per second; 0 for an image.
  double sourceMbps = 0;
  /// Nominal frames per second; 0 for an image.
  double sourceFPS = 0;
  int64_t sourceBytes = 0;
  bool sourceIsHDR = false;
  /// Seconds; 0 for an image.
  double duration = 0;
};

}  // namespace vantrel
