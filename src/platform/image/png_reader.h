#pragma once

#include <memory>

#include "platform/image/image_reader.h"
#include "platform/image/read_only_file.h"

namespace vantrel {

/// A reader of PNG files (ISO/IEC 15948 with the extensions eXIf and acTL).
[[nodiscard]] std::unique_ptr<ImageReader> openPng(ReadOnlyFile file);

}  // namespace vantrel
