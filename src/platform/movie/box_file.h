#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

#include "platform/desktop/file_descriptor.h"

namespace vantrel {

/// Tracks of a movie that are looked at; a file may hold any number of small ones.
constexpr size_t kMostTracks = 1024;

/// Where a box lies in a file, in bytes from its start. `end` is what the box claims and may lie
/// past the end of everything around it.
struct FileBox {
  uint32_t type = 0;
  uint64_t begin = 0, payload = 0, end = 0;
};

/// A file of boxes, read in small pieces where one looks. One thread.
class BoxFile final {
 public:
  /// More bytes than the header of any movie needs beside its sample tables.
  static constexpr uint64_t kMostLoaded = uint64_t{64} << 20;

  /// `mostLoaded` limits the bytes of all that is loaded. Throws std::system_error.
  explicit BoxFile(std::filesystem::path path, uint64_t mostLoaded = kMostLoaded);

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  [[nodiscard]] int descriptor() const { return m_file.get(); }
  /// Bytes at the time of opening.
  [[nodiscard]] uint64_t size() const { return m_size; }

  /// Whether it begins as files of this family do.
  [[nodiscard]] bool isQuickTime();

  /// Bytes read, fewer than asked for only at the end of the file. Throws std::system_error.
  [[nodiscard]] size_t readAt(uint64_t offset, std::span<uint8_t> to) const;
  /// Fills `to`; false when the file ends before. Small reads near each other are cheap. Throws
  /// std::system_error.
  [[nodiscard]] bool read(uint64_t offset, std::span<uint8_t> to);

  /// The box whose header stands at `offset`, among boxes that end at `limit`. Absent when there
  /// is no room for one, or when no box starts like that.
  [[nodiscard]] std::optional<FileBox> boxAt(uint64_t offset, uint64_t limit);

  /// The next of the boxes between `offset` and `limit` that has this type. The search ends at a
  /// box that passes `limit`.
  [[nodiscard]] std::optional<FileBox> find(uint32_t type, uint64_t offset, uint64_t limit);
  [[nodiscard]] std::optional<FileBox> child(const FileBox& parent, uint32_t type) {
    return find(type, parent.payload, parent.end);
  }

  /// The bytes between two offsets. Absent when the file has not so many, or when all that was
  /// loaded would pass its limit.
  [[nodiscard]] std::optional<std::vector<uint8_t>> load(uint64_t begin, uint64_t end);

 private:
  static constexpr size_t kWindow = size_t{16} << 10;

  std::filesystem::path m_path;
  FileDescriptor m_file;
  uint64_t m_size = 0;
  /// Bytes that may still be loaded.
  uint64_t m_loadable = 0;
  /// What the file holds from m_windowBegin on.
  uint64_t m_windowBegin = 0;
  std::vector<uint8_t> m_window;
};

}  // namespace vantrel
