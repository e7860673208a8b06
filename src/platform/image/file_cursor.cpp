#include "platform/image/file_cursor.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace vantrel {

std::span<const std::byte> FileCursor::peek() noexcept {
  if (m_used == m_filled) {
    m_begin += m_used;
    m_used = 0;
    m_filled = m_file.read(m_begin, m_buffer);
  }
  return std::span(m_buffer).subspan(m_used, m_filled - m_used);
}

bool FileCursor::read(std::span<std::byte> to) noexcept {
  while (!to.empty()) {
    const std::span<const std::byte> ready = peek();
    if (ready.empty()) return false;
    const size_t count = std::min(ready.size(), to.size());
    std::memcpy(to.data(), ready.data(), count);
    m_used += count;
    to = to.subspan(count);
  }
  return true;
}

void FileCursor::skip(uint64_t count) noexcept {
  if (count <= m_filled - m_used) {
    m_used += static_cast<size_t>(count);
    return;
  }
  const uint64_t room = std::numeric_limits<uint64_t>::max() - position();
  m_begin = position() + std::min(count, room);
  m_used = m_filled = 0;
}

}  // namespace vantrel
