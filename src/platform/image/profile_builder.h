#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace vantrel {

/// CIE 1931 chromaticities of an RGB space.
struct Chromaticities {
  double whiteX, whiteY;
  double redX, redY;
  double greenX, greenY;
  double blueX, blueY;
};

/// The primaries and the white point of sRGB (IEC 61966-2-1).
inline constexpr Chromaticities kSrgbChromaticities = {0.3127, 0.3290, 0.64, 0.33,
                                                       0.30,   0.60,   0.15, 0.06};

/// An ICC profile of the RGB space with these primaries, whose linear light is the sample raised to
/// `exponent`; absent: the sRGB curve. The same bytes for the same values. Empty when no space has
/// such primaries or the exponent is not between 0.1 and 10.
[[nodiscard]] std::vector<uint8_t> rgbProfile(const Chromaticities& chromaticities,
                                              std::optional<double> exponent);

/// The same for grey.
[[nodiscard]] std::vector<uint8_t> grayProfile(double exponent);

}  // namespace vantrel
