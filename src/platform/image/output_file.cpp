#include "platform/image/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace vantrel {
namespace {

// Systems refuse or shorten single writes of 2 GiB and more.
constexpr size_t kMostBytesAtOnce = size_t{1} << 30;

std::error_code lastError() {
  return {errno, std::generic_category()};
}

}  // namespace

OutputFile::OutputFile(std::filesystem::path path)
    : m_path(std::move(path)),
      m_descriptor(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
  if (m_descriptor < 0) fail(lastError());
}

OutputFile::~OutputFile() {
  if (m_descriptor >= 0) ::close(m_descriptor);
}

void OutputFile::write(const void* data, size_t size) {
  if (const std::error_code error = tryWrite(data, size)) fail(error);
}

std::error_code OutputFile::tryWrite(const void* data, size_t size) noexcept {
  const auto* next = static_cast<const std::byte*>(data);
  while (size > 0) {
    const ssize_t written = ::write(m_descriptor, next, std::min(size, kMostBytesAtOnce));
    if (written < 0) {
      if (errno == EINTR) continue;
      return lastError();
    }
    next += written;
    size -= static_cast<size_t>(written);
  }
  return {};
}

void OutputFile::close() {
  // The descriptor is gone even when close fails.
  if (::close(std::exchange(m_descriptor, -1)) != 0) fail(lastError());
}

void OutputFile::fail(const std::error_code& error) const {
  throw std::system_error(error, m_path.string());
}

}  // namespace vantrel
