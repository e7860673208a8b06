#include "platform/movie/timed_header.h"

#include <QtGlobal>
#include <limits>

#include "platform/movie/box_bytes.h"
#include "platform/movie/box_tree.h"

namespace vantrel {

TimedHeader::TimedHeader(Kind kind, std::span<const uint8_t> payload) {
  ByteCursor cursor(payload);
  const uint32_t versionAndFlags = cursor.u32();
  m_wide = versionAndFlags >> 24 == 1;
  m_flags = versionAndFlags & 0xffffff;
  m_created = cursor.word(m_wide);
  m_modified = cursor.word(m_wide);
  const auto middle = cursor.take(static_cast<uint64_t>(kind));
  m_middle.assign(middle.begin(), middle.end());
  m_duration = cursor.word(m_wide);
  m_rest.assign(cursor.rest().begin(), cursor.rest().end());
  if (!cursor.ok() || m_rest.size() < 2)
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is incomplete"));
}

uint32_t TimedHeader::number() const {
  return ByteCursor(m_middle).u32();
}

void TimedHeader::setNumber(uint32_t value) {
  for (size_t i = 0; i < 4; ++i)
    m_middle[i] = static_cast<uint8_t>(value >> (24 - 8 * i));
}

void TimedHeader::setEnabled(bool enabled) {
  m_flags = enabled ? m_flags | 1 : m_flags & ~uint32_t{1};
}

void TimedHeader::setLanguage(uint16_t language) {
  m_rest[0] = static_cast<uint8_t>(language >> 8);
  m_rest[1] = static_cast<uint8_t>(language);
}

std::vector<uint8_t> TimedHeader::payload() const {
  const bool wide = m_wide || m_duration > std::numeric_limits<uint32_t>::max();
  BoxWriter writer;
  writer.u32((wide ? 1u << 24 : 0) | m_flags);
  writer.word(m_created, wide);
  writer.word(m_modified, wide);
  writer.append(m_middle);
  writer.word(m_duration, wide);
  writer.append(m_rest);
  return writer.release();
}

}  // namespace vantrel
