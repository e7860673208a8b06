#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/image/bitmap.h"

namespace vantrel {

/// The name of the colours of a picture for display: the description in its ICC profile without
/// blanks at its end; without a profile "sRGB IEC61966-2.1" for Rgb and Indexed, "Generic Gray" for
/// Gray, "Generic CMYK" for Cmyk, "Generic Lab" for Lab. Absent when the profile cannot be read or
/// has no name.
[[nodiscard]] std::optional<std::string> colorProfileName(const Bitmap& bitmap);

/// True when the ICC profile can be read and its colour space is the one of `model`.
[[nodiscard]] bool profileFits(const std::vector<uint8_t>& iccProfile, ColorModel model);

/// The sRGB colour space as an ICC profile, the same bytes each time.
[[nodiscard]] const std::vector<uint8_t>& srgbProfile();

/// The 8-bit values, in the RGB space of `iccProfile` (empty: sRGB), of the sRGB colour with these
/// channels, each from 0 to 1.
[[nodiscard]] std::array<uint8_t, 3> srgbColorIn(const std::vector<uint8_t>& iccProfile, double red,
                                                 double green, double blue);

}  // namespace vantrel
