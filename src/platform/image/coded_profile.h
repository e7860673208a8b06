#pragma once

#include <cstdint>
#include <vector>

#include "platform/image/bitmap.h"

namespace vantrel {

/// The ICC profile for pixels of `model`, Rgb or Gray, whose colour is described by code points of
/// ITU-T H.273: ColourPrimaries and TransferCharacteristics. Empty, which stands for sRGB, for
/// sRGB itself and for code points that are unspecified or not known. The same bytes for the same
/// values.
///
/// Scene-referred curves of television are inverted as they stand. In the curves of BT.2100 a
/// signal of 203 cd/m² is white (ITU-R BT.2408) and anything brighter is cut off.
[[nodiscard]] std::vector<uint8_t> codedProfile(int primaries, int transfer, ColorModel model);

}  // namespace vantrel
