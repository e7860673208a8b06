#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace vantrel {

/// How code values stand for colours: code points of ITU-T H.273, where 2 is "unspecified".
struct ColorTags {
  static constexpr int kUnspecified = 2;

  int primaries = kUnspecified, transfer = kUnspecified, matrix = kUnspecified;

  /// Whether the transfer function is that of PQ (SMPTE ST 2084) or HLG (ARIB STD-B67). Nothing
  /// else makes a video HDR.
  [[nodiscard]] bool isHdr() const;
  /// All three specified: those of ITU-R BT.2020 with PQ where an HDR video has none, and BT.709
  /// where another has none. The matrix is one for YUV: that of RGB counts as none.
  [[nodiscard]] ColorTags completed() const;

  friend bool operator==(const ColorTags&, const ColorTags&) = default;
};

/// A fraction as bitstreams carry it.
struct Fraction {
  int32_t numerator = 0, denominator = 1;
  friend bool operator==(const Fraction&, const Fraction&) = default;
};

/// The display on which an HDR film was graded (SMPTE ST 2086). Chromaticities are CIE 1931 x and y
/// in the order red, green, blue; luminances in candela per square metre.
struct MasteringDisplay {
  std::array<std::array<Fraction, 2>, 3> primaries;
  std::array<Fraction, 2> whitePoint;
  Fraction lowestLuminance, highestLuminance;
  friend bool operator==(const MasteringDisplay&, const MasteringDisplay&) = default;
};

/// Light levels of a film in candela per square metre (CTA-861.3).
struct ContentLight {
  uint16_t maximum = 0, maximumFrameAverage = 0;
  friend bool operator==(const ContentLight&, const ContentLight&) = default;
};

/// The static HDR metadata of a film; either may be absent. Dynamic metadata is never carried.
struct HdrMetadata {
  std::optional<MasteringDisplay> masteringDisplay;
  std::optional<ContentLight> contentLight;
  friend bool operator==(const HdrMetadata&, const HdrMetadata&) = default;
};

/// Where the chroma samples of a 4:2:0 picture lie (the names of ITU-T H.273, with their types).
enum class ChromaSiting : uint8_t { Left, Center, TopLeft, Top, BottomLeft, Bottom };

}  // namespace vantrel
