#include "editor/source_file.h"

#include <cmath>

#include "model/encoding_settings.h"

namespace vantrel {

double SourceFile::originalBitrate() const {
  const bool isMeasured = std::isfinite(sourceMbps) && sourceMbps > 0;
  return isMeasured ? sourceMbps : EncodingSettings().megabitsPerSecond;
}

}  // namespace vantrel
