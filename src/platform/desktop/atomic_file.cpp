#include "platform/desktop/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtGlobal>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "base/cancelled.h"
#include "platform/desktop/file_descriptor.h"
#include "platform/desktop/file_error.h"
#include "platform/desktop/regular_file.h"

namespace vantrel {
namespace {

/// As many as the Linux kernel follows.
constexpr int kMostLinks = 40;
constexpr mode_t kPermissions = 0777;
constexpr mode_t kOwnerReadsAndWrites = S_IRUSR | S_IWUSR;
constexpr mode_t kEverybodyReadsAndWrites = 0666;
constexpr int kNameAttempts = 100;
/// Bytes copied between two looks at the stop token.
constexpr size_t kCopyChunk = size_t{4} << 20;

/// The file that a write to `path` would change: the end of its chain of links, there or not.
std::filesystem::path linksFollowed(const std::filesystem::path& path) {
  std::filesystem::path target = path;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code ignored;
    if (!std::filesystem::is_symlink(target, ignored)) return target;
    std::error_code error;
    const std::filesystem::path next = std::filesystem::read_symlink(target, error);
    if (error) throw fileError(path, FileAction::Save, error);
    target = target.parent_path() / next;
  }
  throw fileError(path, FileAction::Save,
                  std::make_error_code(std::errc::too_many_symbolic_link_levels));
}

/// Permissions of the file to replace; absent if there is none yet.
std::optional<mode_t> permissionsOfOld(const std::filesystem::path& name,
                                       const std::filesystem::path& destination) {
  if (!destination.has_filename()) {
    throw fileError(name, FileAction::Save, std::make_error_code(std::errc::is_a_directory));
  }
  struct stat status {};
  if (::stat(destination.c_str(), &status) != 0) {
    if (errno == ENOENT) return std::nullopt;
    throw fileError(name, FileAction::Save);
  }
  if (S_ISDIR(status.st_mode)) {
    throw fileError(name, FileAction::Save, std::make_error_code(std::errc::is_a_directory));
  }
  if (!S_ISREG(status.st_mode)) throw fileError(name, FileAction::Save, FileFault::NotAFile);
  // Renaming over it would ask the folder alone.
  if (::faccessat(AT_FDCWD, destination.c_str(), W_OK, AT_EACCESS) != 0) {
    throw fileError(name, FileAction::Save);
  }
  return status.st_mode & kPermissions;
}

/// Short, so that it fits wherever the destination's own name does.
std::string randomName() {
  static thread_local std::mt19937_64 random{std::random_device{}()};
  char name[32];
  std::snprintf(name, sizeof name, ".vantrel-%016llx", static_cast<unsigned long long>(random()));
  return name;
}

/// Makes a renaming last. Some file systems cannot flush a folder, and the file is in its place
/// already: failure is no error.
void flushFolderOf(const std::filesystem::path& file) {
  const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
  const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.get());
}

/// Copies one file to another with both at their start.
class Copy {
 public:
  Copy(const std::filesystem::path& source, const std::filesystem::path& destination)
      : m_source(source), m_destination(destination), m_input(openRegularFile(source)) {}

  /// `temporary` is where the destination is written.
  void run(const std::filesystem::path& temporary, const std::stop_token& stop,
           const std::function<void(int64_t copied)>& progress) {
    m_output = FileDescriptor(::open(temporary.c_str(), O_WRONLY | O_CLOEXEC));
    if (!m_output.isOpen()) throw fileError(m_destination, FileAction::Save);
    int64_t copied = 0;
    for (;;) {
      throwIfCancelled(stop);
      const size_t chunk = copyChunk();
      if (chunk == 0) return;
      copied += static_cast<int64_t>(chunk);
      if (progress) progress(copied);
    }
  }

 private:
  /// Bytes copied, up to kCopyChunk; 0 at the end.
  size_t copyChunk() {
    if (m_systemCopies) {
      const size_t copied = copyChunkBySystem();
      if (copied > 0) return copied;
      // The end, or a pair of files that the system cannot copy: reading tells.
      m_systemCopies = false;
    }
    return copyChunkByHand();
  }

  /// Leaves the bytes to the file systems, which may share them instead. 0 when it cannot be done.
  size_t copyChunkBySystem() {
#ifdef Q_OS_LINUX
    const ssize_t copied =
        ::copy_file_range(m_input.get(), nullptr, m_output.get(), nullptr, kCopyChunk, 0);
    return copied > 0 ? static_cast<size_t>(copied) : 0;
#else
    return 0;
#endif
  }

  size_t copyChunkByHand() {
    m_buffer.resize(kCopyChunk);
    ssize_t got = 0;
    do {
      got = ::read(m_input.get(), m_buffer.data(), m_buffer.size());
    } while (got < 0 && errno == EINTR);
    if (got < 0) throw fileError(m_source, FileAction::Read);
    const auto size = static_cast<size_t>(got);
    for (size_t written = 0; written < size;) {
      const ssize_t put = ::write(m_output.get(), m_buffer.data() + written, size - written);
      if (put < 0 && errno == EINTR) continue;
      if (put < 0) throw fileError(m_destination, FileAction::Save);
      written += static_cast<size_t>(put);
    }
    return size;
  }

  const std::filesystem::path& m_source;
  const std::filesystem::path& m_destination;
  FileDescriptor m_input, m_output;
  bool m_systemCopies = true;
  std::vector<char> m_buffer;
};

}  // namespace

AtomicFile::AtomicFile(const std::filesystem::path& destination)
    : m_name(destination), m_destination(linksFollowed(destination)) {
  const std::optional<mode_t> oldMode = permissionsOfOld(m_name, m_destination);
  FileDescriptor file;
  for (int attempt = 0; attempt < kNameAttempts && !file.isOpen(); ++attempt) {
    m_temporary = m_destination.parent_path() / randomName();
    // The process's mask takes away from these permissions what a new file shall not have.
    const mode_t mode = oldMode ? kOwnerReadsAndWrites : kEverybodyReadsAndWrites;
    file = FileDescriptor(
        ::open(m_temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file.isOpen() && errno != EEXIST) break;
  }
  if (!file.isOpen()) throw fileError(m_name, FileAction::Save);

  struct stat status {};
  const bool known = ::fstat(file.get(), &status) == 0;
  m_mode = oldMode.value_or(status.st_mode & kPermissions);
  // Writable to this process until it is finished, whatever it will be then.
  if (!known || ::fchmod(file.get(), m_mode | kOwnerReadsAndWrites) != 0) {
    const std::system_error error = fileError(m_name, FileAction::Save);
    ::unlink(m_temporary.c_str());
    throw error;
  }
}

AtomicFile::~AtomicFile() {
  if (!m_committed) ::unlink(m_temporary.c_str());
}

void AtomicFile::commit() {
  {
    const FileDescriptor file(::open(m_temporary.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    if (!file.isOpen() || ::fchmod(file.get(), m_mode) != 0 || ::fsync(file.get()) != 0) {
      throw fileError(m_name, FileAction::Save);
    }
  }
  if (std::rename(m_temporary.c_str(), m_destination.c_str()) != 0) {
    throw fileError(m_name, FileAction::Save);
  }
  m_committed = true;
  flushFolderOf(m_destination);
}

void atomicCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                const std::stop_token& stop, const std::function<void(int64_t copied)>& progress) {
  throwIfCancelled(stop);
  Copy copy(source, destination);
  AtomicFile file(destination);
  copy.run(file.temporaryPath(), stop, progress);
  throwIfCancelled(stop);
  file.commit();
}

}  // namespace vantrel
