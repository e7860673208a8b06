#pragma once

#include <memory>

#include "platform/image/image_reader.h"
#include "platform/image/read_only_file.h"

namespace vantrel {

/// A reader of TIFF and BigTIFF files (TIFF 6.0 with its supplements) in all layouts that libtiff
/// decodes.
[[nodiscard]] std::unique_ptr<ImageReader> openTiff(ReadOnlyFile file);

}  // namespace vantrel
