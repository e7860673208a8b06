#include "platform/desktop/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>

namespace vantrel {
namespace {

bool apply(int descriptor, int operation) {
  int result = 0;
  do {
    result = ::flock(descriptor, operation);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

}  // namespace

FileLock::FileLock(const std::filesystem::path& path, IfMissing ifMissing)
    : m_file(::open(path.c_str(),
                    O_RDWR | O_CLOEXEC | (ifMissing == IfMissing::Create ? O_CREAT : 0),
                    S_IRUSR | S_IWUSR)) {}

bool FileLock::lock() {
  return apply(m_file.get(), LOCK_EX);
}

bool FileLock::tryLock() {
  return apply(m_file.get(), LOCK_EX | LOCK_NB);
}

bool FileLock::isAt(const std::filesystem::path& path) const {
  struct stat open {};
  struct stat named {};
  return ::fstat(m_file.get(), &open) == 0 && ::stat(path.c_str(), &named) == 0 &&
         open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

}  // namespace vantrel
