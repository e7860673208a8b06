#pragma once

#include <memory>

#include "platform/image/image_reader.h"
#include "platform/image/read_only_file.h"

namespace vantrel {

/// A reader of JPEG files (ITU-T T.81) with 8 bits a sample.
[[nodiscard]] std::unique_ptr<ImageReader> openJpeg(ReadOnlyFile file);

}  // namespace vantrel
