#pragma once

#include <filesystem>
#include <stop_token>

#include "platform/image/bitmap.h"

namespace vantrel {

/// The processors that this process may run on; at least 1.
[[nodiscard]] int availableProcessors();

/// writePng() of image_writer.h with a given number of compressing threads, 1 or more. The file is
/// the same, byte for byte, whatever the number.
void writePngWithThreads(const Bitmap& bitmap, const PixelRect& area,
                         const std::filesystem::path& path, int threads,
                         const std::stop_token& stop);

}  // namespace vantrel
