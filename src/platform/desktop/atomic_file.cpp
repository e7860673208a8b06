#include "platform/desktop/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <random>
#include <string>

#include "base/cancelled.h"
#include "platform/desktop/file_copy.h"
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
  const FileDescriptor input = openRegularFile(source);
  AtomicFile file(destination);
  const FileDescriptor output(::open(file.temporaryPath().c_str(), O_WRONLY | O_CLOEXEC));
  if (!output.isOpen()) throw fileError(destination, FileAction::Save);
  FileCopy copy({input.get(), source}, {output.get(), destination});
  uint64_t copied = 0;
  while (const size_t chunk = copy.copySome(copied)) {
    copied += chunk;
    if (progress) progress(static_cast<int64_t>(copied));
    throwIfCancelled(stop);
  }
  file.commit();
}

}  // namespace vantrel
