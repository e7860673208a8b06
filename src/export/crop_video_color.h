#pragma once

#include <optional>
#include <string>

#include "platform/movie/video_color.h"

namespace vantrel {

/// The colour of a video by the names that FFmpeg gives to the code points of ITU-T H.273, for
/// example "bt709", "smpte2084", "bt2020nc". What the file does not say, or says with a code that
/// has no name, is absent.
struct CropVideoColor {
  std::optional<std::string> primaries, transferFunction, matrix;

  [[nodiscard]] static CropVideoColor of(const ColorTags& tags);
  /// Names that are absent or unknown become ColorTags::kUnspecified.
  [[nodiscard]] ColorTags tags() const;

  /// Whether the transfer function is that of PQ (SMPTE ST 2084) or HLG (ARIB STD-B67). Nothing
  /// else makes a video HDR.
  [[nodiscard]] bool isHDR() const;

  friend bool operator==(const CropVideoColor&, const CropVideoColor&) = default;
};

}  // namespace vantrel
