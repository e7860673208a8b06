#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/image/read_only_file.h"

namespace vantrel {

/// A position in a file that moves forward, with a buffer of its own, so that many small reads are
/// cheap. The file must outlive it. Owns nothing; throws nothing.
class FileCursor {
 public:
  explicit FileCursor(const ReadOnlyFile& file) : m_file(file) {}
  FileCursor(const FileCursor&) = delete;
  FileCursor& operator=(const FileCursor&) = delete;

  /// Position of the next byte to read; may lie past the end of the file.
  [[nodiscard]] uint64_t position() const { return m_begin + m_used; }

  /// The bytes that can be had without another read of the file; reads when there are none. Empty
  /// at the end. They stay valid until the next call.
  [[nodiscard]] std::span<const std::byte> peek() noexcept;
  /// Fills `to`; false when the file ends before.
  [[nodiscard]] bool read(std::span<std::byte> to) noexcept;
  /// Moves forward by `count` bytes.
  void skip(uint64_t count) noexcept;

 private:
  const ReadOnlyFile& m_file;
  uint64_t m_begin = 0;
  size_t m_used = 0;
  size_t m_filled = 0;
  std::array<std::byte, 64 * 1024> m_buffer;
};

/// The number that `bytes` make, the most significant first.
[[nodiscard]] constexpr uint32_t bigEndian(std::span<const std::byte> bytes) {
  uint32_t value = 0;
  for (const std::byte byte : bytes)
    value = value << 8 | std::to_integer<uint32_t>(byte);
  return value;
}

}  // namespace vantrel
