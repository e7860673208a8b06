#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

namespace vantrel {

/// A regular file opened for reading; owns its descriptor. Reading is by position and keeps no
/// state, so that any number of threads may read at once. Nothing here throws but a lack of memory
/// for the path.
///
/// Every type of image has an opener of the form
/// `std::unique_ptr<ImageReader> openPng(ReadOnlyFile file);`, which takes the file over.
class ReadOnlyFile {
 public:
  /// Absent when the path is missing, not readable, empty, or anything but a regular file. A pipe
  /// or a device is never waited for.
  [[nodiscard]] static std::optional<ReadOnlyFile> open(const std::filesystem::path& path);

  ReadOnlyFile(ReadOnlyFile&& other) noexcept;
  ReadOnlyFile& operator=(ReadOnlyFile&& other) noexcept;
  ~ReadOnlyFile();

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  /// Bytes in the file when it was opened, at least 1.
  [[nodiscard]] uint64_t size() const { return m_size; }

  /// Fills `to` with the bytes from `offset` on. Returns how many were read: fewer than asked for
  /// only at the end of the file or after a read error.
  [[nodiscard]] size_t read(uint64_t offset, std::span<std::byte> to) const noexcept;

 private:
  ReadOnlyFile(std::filesystem::path path, int descriptor, uint64_t size);

  std::filesystem::path m_path;
  int m_descriptor;
  uint64_t m_size;
};

}  // namespace vantrel
