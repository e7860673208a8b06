#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>

#include "platform/desktop/file_destination.h"

namespace vantrel {

/// A file that appears under its name only when it is whole: it is written beside its destination
/// under a temporary name, flushed to disk and renamed over it. Until `commit` returns, the old
/// file stands untouched; without `commit` the destructor removes the temporary file.
///
/// A destination that is a symbolic link stays one, and the file it points to is replaced. A
/// replaced file keeps its permissions, a new one gets those that the process gives to new files.
class AtomicFile {
 public:
  /// Creates the temporary file, empty. Throws std::system_error when the folder or the old file
  /// does not allow it, or when the destination exists and is no regular file.
  explicit AtomicFile(const std::filesystem::path& destination);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  /// Where to write.
  [[nodiscard]] const std::filesystem::path& temporaryPath() const { return m_temporary; }

  /// Flushes and renames. Throws std::system_error; the temporary file then goes with this object.
  void commit();

 private:
  FileDestination m_destination;
  std::filesystem::path m_temporary;
  /// Permissions of the finished file.
  mode_t m_mode = 0;
  bool m_committed = false;
};

/// Copies the bytes of `source` to `destination` as AtomicFile does. `progress` is told the bytes
/// copied so far, on this thread. Throws std::system_error, or Cancelled if asked to stop before
/// all is on disk. Blocking, any thread.
void atomicCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                const std::stop_token& stop = {},
                const std::function<void(int64_t copied)>& progress = {});

}  // namespace vantrel
