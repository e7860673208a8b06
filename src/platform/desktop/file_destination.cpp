#include "platform/desktop/file_destination.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "platform/desktop/file_descriptor.h"
#include "platform/desktop/file_error.h"

namespace vantrel {
namespace {

/// As many as the Linux kernel follows.
constexpr int kMostLinks = 40;
constexpr mode_t kPermissions = 0777;

/// The file that a write to `path` would change: the end of its chain of links, there or not.
std::filesystem::path linksFollowed(const std::filesystem::path& name,
                                    const std::filesystem::path& path) {
  std::filesystem::path target = path;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code ignored;
    if (!std::filesystem::is_symlink(target, ignored)) return target;
    std::error_code error;
    const std::filesystem::path next = std::filesystem::read_symlink(target, error);
    if (error) throw fileError(name, FileAction::Save, error);
    target = target.parent_path() / next;
  }
  throw fileError(name, FileAction::Save,
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

/// Makes a renaming last. Some file systems cannot flush a folder, and the file is in its place
/// already: failure is no error.
void flush(const std::filesystem::path& folder) {
  const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.get());
}

}  // namespace

FileDestination::FileDestination(const std::filesystem::path& path,
                                 const std::filesystem::path& name)
    : m_name(name.empty() ? path : name),
      m_path(linksFollowed(m_name, path)),
      m_oldPermissions(permissionsOfOld(m_name, m_path)) {}

std::filesystem::path FileDestination::folder() const {
  return m_path.has_parent_path() ? m_path.parent_path() : ".";
}

void FileDestination::take(const std::filesystem::path& file,
                           std::optional<mode_t> permissions) const {
  {
    const FileDescriptor open(::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    if (!open.isOpen() || (permissions && ::fchmod(open.get(), *permissions) != 0) ||
        ::fsync(open.get()) != 0) {
      throw fileError(m_name, FileAction::Save);
    }
  }
  if (std::rename(file.c_str(), m_path.c_str()) != 0) throw fileError(m_name, FileAction::Save);
  flush(folder());
}

}  // namespace vantrel
