#pragma once

#include <QColor>
#include <QSizeF>
#include <cstdint>
#include <optional>

#include "media/image_source.h"

namespace vantrel {

/// What the inspector shows and may offer, as values of one moment.
struct InspectorSource {
  /// Present while an image is open.
  std::optional<ImageSource> imageSource;
  /// Upright, in source pixels.
  QSizeF sourceSize{0, 0};
  /// Measured megabits per second of a video.
  double sourceMbps = 0;
  /// Frames per second.
  double sourceFPS = 0;
  int64_t sourceBytes = 0;
  bool sourceIsHDR = false;
  /// Seconds.
  double duration = 0;
  bool loaded = false;
  bool busy = false;
  bool canExport = false;
  /// Of the window, behind the picture.
  QColor canvasColor;
};

}  // namespace vantrel
