#include "platform/movie/chunk_offsets.h"

#include <QtGlobal>
#include <algorithm>
#include <limits>
#include <vector>

namespace vantrel {
namespace {

constexpr uint32_t kShort = fourCC("stco"), kLong = fourCC("co64");

/// The offset table of one track.
class OffsetTable final {
 public:
  explicit OffsetTable(BoxTree& box) : m_box(box), m_isLong(box.type == kLong) {
    ByteCursor cursor(box.payload);
    cursor.skip(4);  // version and flags
    const uint64_t count = cursor.u32();
    if (!cursor.ok() || count > cursor.rest().size() / entrySize()) {
      throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is damaged"));
    }
    m_offsets.reserve(static_cast<size_t>(count));
    for (uint64_t i = 0; i < count; ++i)
      m_offsets.push_back(cursor.word(m_isLong));
    if (!m_offsets.empty()) m_largest = *std::max_element(m_offsets.begin(), m_offsets.end());
  }

  /// As if all media followed each other from 0 on.
  void joinMedia(std::span<const MediaStretch> media) {
    m_largest = 0;
    for (uint64_t& offset : m_offsets) {
      offset = joined(offset, media);
      m_largest = std::max(m_largest, offset);
    }
  }

  /// Whether it had to grow for offsets that are `shift` more.
  [[nodiscard]] bool grow(uint64_t shift) {
    if (m_isLong || m_largest + shift <= std::numeric_limits<uint32_t>::max()) return false;
    m_isLong = true;
    return true;
  }

  /// Bytes more than the box as it stands has.
  [[nodiscard]] uint64_t growth() const {
    return m_isLong && m_box.type == kShort ? 4 * m_offsets.size() : 0;
  }

  void write(uint64_t shift) {
    BoxWriter writer;
    writer.u32(0);  // version and flags
    writer.u32(static_cast<uint32_t>(m_offsets.size()));
    for (const uint64_t offset : m_offsets)
      writer.word(offset + shift, m_isLong);
    m_box.type = m_isLong ? kLong : kShort;
    m_box.payload = writer.release();
  }

 private:
  [[nodiscard]] size_t entrySize() const { return m_isLong ? 8 : 4; }

  static uint64_t joined(uint64_t offset, std::span<const MediaStretch> media) {
    uint64_t before = 0;
    for (const MediaStretch& stretch : media) {
      if (offset >= stretch.begin && offset <= stretch.end) return offset - stretch.begin + before;
      before += stretch.end - stretch.begin;
    }
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header points outside the media"));
  }

  BoxTree& m_box;
  bool m_isLong = false;
  uint64_t m_largest = 0;
  std::vector<uint64_t> m_offsets;
};

BoxTree& offsetBox(BoxTree& trak) {
  BoxTree& table = trak.need(fourCC("mdia")).need(fourCC("minf")).need(fourCC("stbl"));
  BoxTree* box = table.child(kShort);
  return box ? *box : table.need(kLong);
}

}  // namespace

void moveChunks(BoxTree& moov, uint64_t headerOffset, std::span<const MediaStretch> media) {
  std::vector<OffsetTable> tables;
  for (BoxTree& trak : moov.children) {
    if (trak.type == fourCC("trak")) tables.emplace_back(offsetBox(trak)).joinMedia(media);
  }
  const uint64_t header = headerOffset + moov.size();
  uint64_t shift = 0;
  // A table grows once at most: that ends it.
  for (bool grown = true; grown;) {
    shift = header;
    for (const OffsetTable& table : tables)
      shift += table.growth();
    grown = false;
    for (OffsetTable& table : tables)
      grown |= table.grow(shift);
  }
  for (OffsetTable& table : tables)
    table.write(shift);
}

}  // namespace vantrel
