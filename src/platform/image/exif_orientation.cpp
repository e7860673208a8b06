#include "platform/image/exif_orientation.h"

#include <cstdint>
#include <cstring>
#include <optional>

namespace vantrel {
namespace {

constexpr uint32_t kOrientationTag = 0x0112;
constexpr size_t kEntryBytes = 12;

/// Reads numbers of either byte order, and never past the end of the block.
class TiffBlock {
 public:
  /// Absent unless the block begins with a TIFF header.
  static std::optional<TiffBlock> of(std::span<const std::byte> bytes) {
    if (bytes.size() < 8) return std::nullopt;
    const bool little = std::memcmp(bytes.data(), "II*\0", 4) == 0;
    const bool big = std::memcmp(bytes.data(), "MM\0*", 4) == 0;
    if (!little && !big) return std::nullopt;
    return TiffBlock(bytes, little);
  }

  /// The number of `size` bytes at `offset`.
  [[nodiscard]] std::optional<uint32_t> number(uint64_t offset, size_t size) const {
    if (offset > m_bytes.size() || m_bytes.size() - offset < size) return std::nullopt;
    uint32_t value = 0;
    for (size_t i = 0; i < size; ++i) {
      const size_t at = static_cast<size_t>(offset) + (m_little ? size - 1 - i : i);
      value = value << 8 | std::to_integer<uint32_t>(m_bytes[at]);
    }
    return value;
  }

 private:
  TiffBlock(std::span<const std::byte> bytes, bool little) : m_bytes(bytes), m_little(little) {}

  std::span<const std::byte> m_bytes;
  bool m_little;
};

// Bytes of one value of the field types that hold a small number: BYTE, SHORT, LONG; 0 for others.
size_t valueBytes(uint32_t fieldType) {
  switch (fieldType) {
    case 1:
      return 1;
    case 3:
      return 2;
    case 4:
      return 4;
    default:
      return 0;
  }
}

}  // namespace

Orientation exifOrientation(std::span<const std::byte> block) {
  if (block.size() >= 6 && std::memcmp(block.data(), "Exif\0\0", 6) == 0) block = block.subspan(6);
  const std::optional<TiffBlock> tiff = TiffBlock::of(block);
  if (!tiff) return Orientation::TopLeft;

  const uint64_t directory = *tiff->number(4, 4);
  const uint32_t entries = tiff->number(directory, 2).value_or(0);
  for (uint32_t i = 0; i < entries; ++i) {
    const uint64_t entry = directory + 2 + uint64_t{i} * kEntryBytes;
    const std::optional<uint32_t> tag = tiff->number(entry, 2);
    if (!tag) break;
    if (*tag != kOrientationTag) continue;
    const size_t size = valueBytes(tiff->number(entry + 2, 2).value_or(0));
    const bool single = tiff->number(entry + 4, 4) == 1u;
    const std::optional<uint32_t> value = tiff->number(entry + 8, size);
    if (size == 0 || !single || !value) break;
    return orientationFromTag(*value);
  }
  return Orientation::TopLeft;
}

}  // namespace vantrel
