#pragma once

// Private to this folder.

#include "platform/gl/video_display_color.h"

namespace vantrel {

/// `toSignal` and `offset` of a VideoDisplayColor.
struct VideoSignalMatrix {
  ColorMatrix matrix{};
  std::array<double, 3> offset{};

  /// After ITU-T H.273, 8.3. A matrix that is not linear or not known counts as that of BT.2020 or
  /// BT.709, by the primaries.
  [[nodiscard]] static VideoSignalMatrix of(const VideoColorKind& kind);
};

}  // namespace vantrel
