#pragma once

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
  int64_t sourceBytes = 0;
  bool loaded = false;
  bool busy = false;
  bool canExport = false;
};

}  // namespace vantrel
