#include "editor/source_file.h"

#include "model/encoding_settings.h"

namespace vantrel {

double SourceFile::originalBitrate() const {
  return EncodingSettings::originalBitrate(sourceMbps);
}

}  // namespace vantrel
