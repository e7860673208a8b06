#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "platform/image/image_reader.h"

namespace vantrel {

/// Bytes at the beginning of a file that the functions below look at; fewer are fine.
inline constexpr size_t kSignatureBytes = 1024;

[[nodiscard]] bool isPng(std::span<const std::byte> head);
[[nodiscard]] bool isJpeg(std::span<const std::byte> head);
/// TIFF and BigTIFF of either byte order.
[[nodiscard]] bool isTiff(std::span<const std::byte> head);
/// Heic or Heif for a file whose brands (ISO/IEC 23008-12, box `ftyp`) name images that may be
/// coded with HEVC; absent for AVIF, for movies and for anything else.
[[nodiscard]] std::optional<ImageType> heifType(std::span<const std::byte> head);

}  // namespace vantrel
