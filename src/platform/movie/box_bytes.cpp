#include "platform/movie/box_bytes.h"

#include <cassert>
#include <limits>
#include <stdexcept>
#include <utility>

namespace vantrel {

bool isPlausibleType(uint32_t type) {
  for (int shift = 0; shift < 32; shift += 8) {
    const uint32_t character = type >> shift & 0xFF;
    const bool isPrintable = character >= ' ' && character <= '~';
    if (!isPrintable && character != 0xA9) return false;
  }
  return true;
}

std::span<const uint8_t> ByteCursor::take(uint64_t count) {
  if (count > m_bytes.size()) {
    m_ok = false;
    m_bytes = {};
    return {};
  }
  const auto taken = m_bytes.first(static_cast<size_t>(count));
  m_bytes = m_bytes.subspan(taken.size());
  return taken;
}

uint64_t ByteCursor::number(unsigned bytes) {
  uint64_t value = 0;
  for (const uint8_t byte : take(bytes))
    value = value << 8 | byte;
  return value;
}

std::optional<BoxHeader> BoxHeader::parse(std::span<const uint8_t> bytes) {
  ByteCursor cursor(bytes);
  BoxHeader header;
  header.size = cursor.u32();
  header.type = cursor.u32();
  if (header.size == 1) {
    header.headerSize = kLongSize;
    header.size = cursor.u64();
    if (header.size == 0) return std::nullopt;
  }
  if (!cursor.ok() || (header.size != 0 && header.size < header.headerSize)) return std::nullopt;
  return header;
}

std::optional<BoxView> takeBox(std::span<const uint8_t>& bytes) {
  const std::optional<BoxHeader> header = BoxHeader::parse(bytes);
  // Only a box of the file itself can do without a size.
  if (!header || header->size == 0 || header->size > bytes.size()) return std::nullopt;
  const auto whole = bytes.first(static_cast<size_t>(header->size));
  bytes = bytes.subspan(whole.size());
  return BoxView{header->type, whole, whole.subspan(static_cast<size_t>(header->headerSize))};
}

std::optional<BoxView> findBox(std::span<const uint8_t> bytes, uint32_t type) {
  while (const std::optional<BoxView> box = takeBox(bytes)) {
    if (box->type == type) return box;
  }
  return std::nullopt;
}

void BoxWriter::append(std::span<const uint8_t> bytes) {
  m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
}

void BoxWriter::append(std::string_view text) {
  m_bytes.insert(m_bytes.end(), text.begin(), text.end());
}

void BoxWriter::begin(uint32_t type) {
  m_open.push_back(m_bytes.size());
  u32(0);
  u32(type);
}

void BoxWriter::end() {
  const size_t start = m_open.back();
  m_open.pop_back();
  const size_t size = m_bytes.size() - start;
  if (size > std::numeric_limits<uint32_t>::max()) throw std::length_error("box of 4 GiB");
  for (size_t i = 0; i < 4; ++i)
    m_bytes[start + i] = static_cast<uint8_t>(size >> (24 - 8 * i));
}

std::vector<uint8_t> BoxWriter::release() {
  assert(m_open.empty());
  return std::exchange(m_bytes, {});
}

void BoxWriter::number(uint64_t value, int bytes) {
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
    m_bytes.push_back(static_cast<uint8_t>(value >> shift));
}

}  // namespace vantrel
