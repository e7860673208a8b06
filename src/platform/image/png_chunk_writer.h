#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/image/output_file.h"

namespace vantrel {

/// Writes the pieces of a PNG file (ISO/IEC 15948, clause 5). One thread; throws std::system_error.
class PngChunkWriter {
 public:
  /// `file` must outlive the writer.
  explicit PngChunkWriter(OutputFile& file);

  void writeSignature();
  /// One chunk with a type of four letters.
  void write(std::string_view type, std::span<const uint8_t> data);

  /// Adds to the stream of compressed pixels, which is divided into IDAT chunks.
  void addImageData(std::span<const uint8_t> data);
  /// Writes what is left of the stream.
  void endImageData();

 private:
  void flushImageData();

  OutputFile& m_file;
  std::vector<uint8_t> m_imageData;
};

/// The bytes of `value`, the high one first.
[[nodiscard]] constexpr std::array<uint8_t, 4> bigEndian(uint32_t value) {
  return {static_cast<uint8_t>(value >> 24), static_cast<uint8_t>(value >> 16),
          static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
}

}  // namespace vantrel
