#include "platform/image/read_only_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

namespace vantrel {
namespace {

// Most bytes of one system call; some systems refuse more than 2 GiB.
constexpr size_t kMostAtOnce = size_t{1} << 30;

int openRetrying(const char* path) {
  // O_NONBLOCK: a pipe without a writer would be waited for otherwise, before it can be recognised.
  int descriptor;
  do {
    descriptor = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

}  // namespace

std::optional<ReadOnlyFile> ReadOnlyFile::open(const std::filesystem::path& path) {
  const int descriptor = openRetrying(path.c_str());
  if (descriptor < 0) return std::nullopt;
  struct stat status {};
  const bool usable =
      ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
  if (!usable) {
    ::close(descriptor);
    return std::nullopt;
  }
  return ReadOnlyFile(path, descriptor, static_cast<uint64_t>(status.st_size));
}

ReadOnlyFile::ReadOnlyFile(std::filesystem::path path, int descriptor, uint64_t size)
    : m_path(std::move(path)), m_descriptor(descriptor), m_size(size) {}

ReadOnlyFile::ReadOnlyFile(ReadOnlyFile&& other) noexcept
    : m_path(std::move(other.m_path)),
      m_descriptor(std::exchange(other.m_descriptor, -1)),
      m_size(other.m_size) {}

ReadOnlyFile& ReadOnlyFile::operator=(ReadOnlyFile&& other) noexcept {
  std::swap(m_path, other.m_path);
  std::swap(m_descriptor, other.m_descriptor);
  std::swap(m_size, other.m_size);
  return *this;
}

ReadOnlyFile::~ReadOnlyFile() {
  if (m_descriptor >= 0) ::close(m_descriptor);
}

size_t ReadOnlyFile::read(uint64_t offset, std::span<std::byte> to) const noexcept {
  size_t done = 0;
  while (done < to.size() &&
         offset + done <= static_cast<uint64_t>(std::numeric_limits<off_t>::max())) {
    const ssize_t count =
        ::pread(m_descriptor, to.data() + done, std::min(to.size() - done, kMostAtOnce),
                static_cast<off_t>(offset + done));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    done += static_cast<size_t>(count);
  }
  return done;
}

}  // namespace vantrel
