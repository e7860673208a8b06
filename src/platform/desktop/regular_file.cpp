#include "platform/desktop/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/desktop/file_error.h"

namespace vantrel {
namespace {

void refuseAllButFiles(const std::filesystem::path& path, mode_t mode) {
  if (S_ISREG(mode)) return;
  throw fileError(path, FileAction::Open,
                  S_ISDIR(mode) ? std::make_error_code(std::errc::is_a_directory)
                                : make_error_code(FileFault::NotAFile));
}

}  // namespace

FileDescriptor openRegularFile(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) throw fileError(path, FileAction::Open);
  refuseAllButFiles(path, status.st_mode);
  // What is there may have become something else by now: O_NONBLOCK opens a pipe without waiting.
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
    throw fileError(path, FileAction::Open);
  }
  refuseAllButFiles(path, status.st_mode);
  return file;
}

}  // namespace vantrel
