#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>

namespace vantrel {

/// A file that appears under its name only when it is whole: it is written beside its destination
/// under a temporary name, flushed to disk and renamed over it. Until `commit` returns, the old
/// file stands untouched; without `commit` the destructor removes the temporary file.
class AtomicFile {
 public:
  /// Creates the temporary file, empty. Throws std::system_error when the folder does not allow it
  /// or the destination is a folder.
  explicit AtomicFile(std::filesystem::path destination);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  /// Where to write.
  [[nodiscard]] const std::filesystem::path& temporaryPath() const { return m_temporary; }

  /// Flushes and renames. Throws std::system_error; the temporary file then goes with this object.
  void commit();

 private:
  std::filesystem::path m_destination;
  std::filesystem::path m_temporary;
  bool m_committed = false;
};

/// Copies the bytes of `source` to `destination` as AtomicFile does, which may be the source of
/// anything but itself. `progress` is told the bytes copied so far, on this thread. Throws
/// std::system_error or Cancelled. Blocking, any thread.
void atomicCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                const std::stop_token& stop = {},
                const std::function<void(int64_t copied)>& progress = {});

}  // namespace vantrel
