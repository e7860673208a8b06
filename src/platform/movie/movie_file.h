#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "platform/desktop/file_descriptor.h"
#include "platform/movie/av_ptr.h"

namespace vantrel {

/// A new file as FFmpeg writes to it. Keeps the system's own reason when writing fails. One thread
/// at a time.
class MovieFile final {
 public:
  /// Makes the file `path`, empty. Throws std::system_error. `name` stands for it in all errors.
  MovieFile(const std::filesystem::path& path, std::filesystem::path name);
  ~MovieFile();
  MovieFile(const MovieFile&) = delete;
  MovieFile& operator=(const MovieFile&) = delete;

  [[nodiscard]] AVIOContext* context() { return m_context; }

  /// Throws what went wrong with the file so far: std::system_error for what the system refused,
  /// MovieError for a negative `code` of FFmpeg's.
  void check(int code) const;
  /// Writes what is in memory, to the disk itself if `flushes`, and closes. Throws
  /// std::system_error.
  void close(bool flushes);

 private:
  [[nodiscard]] int write(const uint8_t* bytes, size_t size);
  [[nodiscard]] int64_t seek(int64_t offset, int whence);

  std::filesystem::path m_name;
  FileDescriptor m_descriptor;
  AVIOContext* m_context = nullptr;
  /// The first errno; 0 if there was none.
  int m_errno = 0;
};

}  // namespace vantrel
