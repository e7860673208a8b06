#include "model/encoding_settings.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

QString EncodingSettings::rawValue(Codec codec) {
  return codec == Codec::h264 ? QStringLiteral("H.264") : QStringLiteral("HEVC");
}

bool EncodingSettings::isValid() const {
  return megabitsPerSecond >= kLowestMbps && megabitsPerSecond <= kHighestMbps;
}

double EncodingSettings::originalBitrate(double measured) {
  return std::isfinite(measured) && measured > 0 ? measured : EncodingSettings().megabitsPerSecond;
}

BitrateRange EncodingSettings::bitrateRange(double rate) {
  constexpr double kUsualLower = 0.5, kUsualUpper = 40;
  // The constants come first, so that they stand where the rate is not a number.
  return {std::min(kUsualLower, std::max(kLowestMbps, rate)),
          std::max(kUsualUpper, std::ceil(rate))};
}

}  // namespace vantrel
