#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace vantrel {

/// Copies bytes from one open file to where another stands; the file systems share them instead
/// where they can. One thread.
class FileCopy final {
 public:
  /// An open file, and its name for the user.
  struct End {
    int descriptor = -1;
    std::filesystem::path name;
  };
  /// Bytes that one call copies at most.
  static constexpr size_t kChunk = size_t{4} << 20;

  FileCopy(End source, End destination);

  /// Copies up to `most` bytes from the offset `from` of the source, and no more than kChunk.
  /// Returns how many, 0 only at the end of the source. Throws std::system_error.
  [[nodiscard]] size_t copySome(uint64_t from, uint64_t most = kChunk);
  /// Writes bytes of another origin. Throws std::system_error.
  void write(std::span<const uint8_t> bytes);

 private:
  [[nodiscard]] size_t copyBySystem(uint64_t from, size_t most) const;
  [[nodiscard]] size_t copyByHand(uint64_t from, size_t most);

  End m_source, m_destination;
  bool m_systemCopies = true;
  std::vector<uint8_t> m_buffer;
};

}  // namespace vantrel
