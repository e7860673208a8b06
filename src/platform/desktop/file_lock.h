#pragma once

#include <filesystem>

#include "platform/desktop/file_descriptor.h"

namespace vantrel {

/// An advisory lock between processes, on a file that holds nothing (flock). It belongs to the open
/// file, not to the process: two objects exclude each other in one process too, a program started
/// from here does not inherit it, and the system releases it when its owner dies in any way.
class FileLock final {
 public:
  enum class IfMissing { Create, Fail };

  /// Not open.
  FileLock() = default;
  /// Opens the lock file, made with mode 0600 if need be, without locking. On failure not open.
  FileLock(const std::filesystem::path& path, IfMissing ifMissing);

  [[nodiscard]] bool isOpen() const { return m_file.isOpen(); }

  /// Waits for the lock. False when not open, or when the file system knows no locks.
  bool lock();
  /// Takes the lock if it is free.
  bool tryLock();
  /// Whether `path` still names the open file. A lock on a file that was deleted excludes nobody
  /// who comes later.
  [[nodiscard]] bool isAt(const std::filesystem::path& path) const;

 private:
  FileDescriptor m_file;
};

}  // namespace vantrel
