#include "platform/desktop/file_copy.h"

#include <unistd.h>

#include <QtGlobal>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/desktop/file_error.h"

namespace vantrel {

FileCopy::FileCopy(End source, End destination)
    : m_source(std::move(source)), m_destination(std::move(destination)) {}

size_t FileCopy::copySome(uint64_t from, uint64_t most) {
  const auto size = static_cast<size_t>(std::min<uint64_t>(most, kChunk));
  if (m_systemCopies) {
    const size_t copied = copyBySystem(from, size);
    if (copied > 0) return copied;
    // The end, or a pair of files that the system cannot copy: reading tells.
    m_systemCopies = false;
  }
  return copyByHand(from, size);
}

void FileCopy::write(std::span<const uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t put = ::write(m_destination.descriptor, bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) throw fileError(m_destination.name, FileAction::Save);
    bytes = bytes.subspan(static_cast<size_t>(put));
  }
}

/// Leaves the bytes to the file systems. 0 when it cannot be done.
size_t FileCopy::copyBySystem([[maybe_unused]] uint64_t from, [[maybe_unused]] size_t most) const {
#ifdef Q_OS_LINUX
  auto offset = static_cast<off64_t>(from);
  const ssize_t copied =
      ::copy_file_range(m_source.descriptor, &offset, m_destination.descriptor, nullptr, most, 0);
  return copied > 0 ? static_cast<size_t>(copied) : 0;
#else
  return 0;
#endif
}

size_t FileCopy::copyByHand(uint64_t from, size_t most) {
  m_buffer.resize(kChunk);
  ssize_t got = 0;
  do {
    got = ::pread(m_source.descriptor, m_buffer.data(), most, static_cast<off_t>(from));
  } while (got < 0 && errno == EINTR);
  if (got < 0) throw fileError(m_source.name, FileAction::Read);
  const auto size = static_cast<size_t>(got);
  write(std::span<const uint8_t>(m_buffer).first(size));
  return size;
}

}  // namespace vantrel
