#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/image/bitmap.h"
#include "platform/image/profile_builder.h"

namespace vantrel {

/// The ICC profile for pixels of `model`, Rgb or Gray, whose colour is described by code points of
/// ITU-T H.273: ColourPrimaries and TransferCharacteristics. Empty, which stands for sRGB, for
/// sRGB itself and for code points that are unspecified or not known. The same bytes for the same
/// values.
///
/// Scene-referred curves of television are inverted as they stand. In the curves of BT.2100 a
/// signal of 203 cd/m² is white (ITU-R BT.2408) and anything brighter is cut off.
[[nodiscard]] std::vector<uint8_t> codedProfile(int primaries, int transfer, ColorModel model);

/// Of a code point of H.273's ColourPrimaries; absent for those that are unspecified or not known.
[[nodiscard]] std::optional<Chromaticities> codedChromaticities(int primaries);

/// Luminance of diffuse white in HDR, in cd/m² (ITU-R BT.2408).
inline constexpr double kHdrWhite = 203;
/// Luminance of a PQ signal from 0 to 1, in cd/m² (ITU-R BT.2100, table 4).
[[nodiscard]] double pqLuminance(double signal);
/// Light of the scene of an HLG signal, both from 0 to 1 (ITU-R BT.2100, table 5).
[[nodiscard]] double hlgSceneLight(double signal);

}  // namespace vantrel
