#pragma once

#include <memory>

#include "platform/image/image_reader.h"
#include "platform/image/read_only_file.h"

namespace vantrel {

/// A reader of HEIF files (ISO/IEC 23008-12) with a still image in a coding that libheif decodes.
/// The turning and mirroring of the file format are applied; the EXIF orientation, which repeats
/// them, is not.
[[nodiscard]] std::unique_ptr<ImageReader> openHeif(ReadOnlyFile file);

}  // namespace vantrel
