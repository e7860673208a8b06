#pragma once

// Private to this folder.

#include <array>
#include <vector>

#include "platform/movie/video_picture.h"

namespace vantrel {

/// Three rows of three.
using ColorMatrix = std::array<double, 9>;

/// What of a picture decides how its samples become colours of the display.
struct VideoColorKind {
  VideoPicture::Model model = VideoPicture::Model::Yuv;
  int depth = 8;
  bool isFullRange = false;
  ColorTags color;
  HdrMetadata hdrMetadata;

  [[nodiscard]] static VideoColorKind of(const VideoPicture& picture);
  friend bool operator==(const VideoColorKind&, const VideoColorKind&) = default;
};

/// How the light of a signal reaches an sRGB display.
struct VideoLight {
  static constexpr int kTableSize = 2048;

  /// Light for signals from 0 to 1, evenly.
  std::vector<float> light;
  /// HLG's OOTF (ITU-R BT.2100, table 5): light is multiplied by `gain` and by its luminance,
  /// which weighs the channels so, raised to `exponent`. 1 and 0 for others.
  std::array<double, 3> luminance{};
  double gain = 1, exponent = 0;
  /// The factor for light whose brightest channel is f⁴ × `peak`, for f from 0 to 1, evenly. Light
  /// is 1 for the display's white.
  std::vector<float> tone;
  double peak = 1;
  /// From light in the video's primaries to light in those of sRGB.
  ColorMatrix toSrgb{};
};

/// How samples become colours of an sRGB display.
///
/// A video that is not HDR is made for a display of its own kind, so that its signal is sent to
/// the display as it stands, whichever of television's curves it is tagged with; this is what
/// players do. The primaries of BT.601 are taken for those of BT.709, which they nearly are. Only
/// other primaries, and curves that no display has (linear, logarithmic, of cinema, HDR), are
/// converted by way of light.
struct VideoDisplayColor {
  /// From samples, 1 for the highest number that their bytes hold, to a signal from 0 to 1 of red,
  /// green and blue: toSignal · samples + offset.
  ColorMatrix toSignal{};
  std::array<double, 3> offset{};
  /// Whether the signal is converted, as `light` tells, or shown as it stands.
  bool convertsLight = false;
  VideoLight light;

  [[nodiscard]] static VideoDisplayColor of(const VideoColorKind& kind);
};

}  // namespace vantrel
