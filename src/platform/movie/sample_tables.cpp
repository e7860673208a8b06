#include "platform/movie/sample_tables.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "platform/movie/box_bytes.h"

namespace vantrel {
namespace {

/// A month of film has fewer; a file that is all hole may claim any number.
constexpr uint32_t kMostEntries = 1u << 28;

/// The entries of a table, one after the other, with a buffer of its own.
class EntryStream final {
 public:
  /// A table of `count` entries of `entrySize` bytes from `offset` on.
  EntryStream(const BoxFile& file, uint64_t offset, uint64_t count, uint64_t entrySize)
      : m_file(file), m_offset(offset), m_end(offset + count * entrySize), m_entrySize(entrySize) {}

  /// The next entry; empty at the end.
  [[nodiscard]] std::span<const uint8_t> next() {
    if (m_used == m_buffer.size()) refill();
    if (m_buffer.size() - m_used < m_entrySize) return {};
    const auto entry = std::span<const uint8_t>(m_buffer).subspan(m_used, m_entrySize);
    m_used += m_entrySize;
    return entry;
  }

 private:
  static constexpr uint64_t kEntries = 4096;

  void refill() {
    m_buffer.resize(static_cast<size_t>(std::min(kEntries * m_entrySize, m_end - m_offset)));
    m_buffer.resize(m_file.readAt(m_offset, m_buffer));
    m_offset += m_buffer.size();
    m_used = 0;
  }

  const BoxFile& m_file;
  uint64_t m_offset, m_end, m_entrySize;
  size_t m_used = 0;
  std::vector<uint8_t> m_buffer;
};

/// The first numbers of a table and where its entries stand.
struct TableStart {
  uint32_t first = 0, count = 0;
  uint64_t entries = 0, room = 0;
};

/// `numbers` is 1 for a table that begins with its count, 2 for one with a number before that.
std::optional<TableStart> startOf(BoxFile& file, const std::optional<FileBox>& box,
                                  uint64_t numbers) {
  std::array<uint8_t, 12> bytes{};
  const std::span<uint8_t> start(bytes.data(), static_cast<size_t>(4 + 4 * numbers));
  if (!box || box->end - box->payload < start.size() || !file.read(box->payload, start)) {
    return std::nullopt;
  }
  ByteCursor cursor(start);
  cursor.skip(4);  // version and flags
  TableStart table;
  if (numbers == 2) table.first = cursor.u32();
  table.count = cursor.u32();
  table.entries = box->payload + start.size();
  table.room = box->end - table.entries;
  return table;
}

/// Sizes of the samples in their order.
class SampleSizes final {
 public:
  static std::optional<SampleSizes> open(BoxFile& file, const FileBox& table) {
    std::optional<FileBox> box = file.child(table, fourCC("stsz"));
    const bool isCompact = !box;
    if (isCompact) box = file.child(table, fourCC("stz2"));
    const std::optional<TableStart> start = startOf(file, box, 2);
    if (!start) return std::nullopt;
    const uint32_t bits = isCompact ? start->first & 0xff : 32;
    if (isCompact && bits != 4 && bits != 8 && bits != 16) return std::nullopt;
    const uint32_t constant = isCompact ? 0 : start->first;
    if (constant != 0) return SampleSizes(file, *start, constant, bits);
    if (start->count > kMostEntries || (uint64_t{start->count} * bits + 7) / 8 > start->room) {
      return std::nullopt;
    }
    return SampleSizes(file, *start, constant, bits);
  }

  [[nodiscard]] uint64_t count() const { return m_count; }

  /// Bytes of the next `samples` together. A size of 1 says nothing.
  [[nodiscard]] uint64_t take(uint64_t samples) {
    if (m_constant != 0) return m_constant == 1 ? 0 : m_constant * samples;
    uint64_t sum = 0;
    for (uint64_t i = 0; i < samples; ++i)
      sum += next();
    return sum;
  }

 private:
  SampleSizes(const BoxFile& file, const TableStart& start, uint32_t constant, uint32_t bits)
      : m_count(start.count),
        m_constant(constant),
        m_bits(bits),
        m_entries(file, start.entries,
                  constant != 0 ? 0 : (uint64_t{start.count} * bits + 7) / 8 / entrySize(bits),
                  entrySize(bits)) {}

  /// Two samples of four bits are one entry.
  static uint64_t entrySize(uint32_t bits) { return bits < 8 ? 1 : bits / 8; }

  uint64_t next() {
    if (m_bits == 4 && m_hasNibble) {
      m_hasNibble = false;
      return m_nibble;
    }
    uint64_t value = 0;
    for (const uint8_t byte : m_entries.next())
      value = value << 8 | byte;
    if (m_bits != 4) return value;
    m_hasNibble = true;
    m_nibble = value & 0xf;
    return value >> 4;
  }

  uint64_t m_count, m_constant;
  uint32_t m_bits;
  EntryStream m_entries;
  bool m_hasNibble = false;
  uint64_t m_nibble = 0;
};

/// Samples of each chunk, in the order of the chunks.
class ChunkLengths final {
 public:
  ChunkLengths(const BoxFile& file, const TableStart& start)
      : m_runs(file, start.entries, start.count, 12) {
    readRun();
    m_samples = m_nextSamples;
    readRun();
  }

  [[nodiscard]] uint64_t next() {
    if (++m_chunk == m_nextFirst) {
      m_samples = m_nextSamples;
      readRun();
    }
    return m_samples;
  }

 private:
  void readRun() {
    ByteCursor cursor(m_runs.next());
    m_nextFirst = cursor.u32();
    m_nextSamples = cursor.u32();
  }

  EntryStream m_runs;
  uint64_t m_chunk = 0;
  uint64_t m_samples = 0;
  /// Of the next run; a first chunk of 0 for none.
  uint64_t m_nextFirst = 0, m_nextSamples = 0;
};

}  // namespace

SampleTableExtent sampleTableExtent(BoxFile& file, const FileBox& table) {
  SampleTableExtent extent;
  std::optional<SampleSizes> sizes = SampleSizes::open(file, table);
  std::optional<FileBox> offsets = file.child(table, fourCC("stco"));
  const uint64_t offsetSize = offsets ? 4 : 8;
  if (!offsets) offsets = file.child(table, fourCC("co64"));
  const std::optional<TableStart> chunks = startOf(file, offsets, 1);
  const std::optional<TableStart> runs = startOf(file, file.child(table, fourCC("stsc")), 1);
  if (!sizes || !chunks || !runs || chunks->count > kMostEntries ||
      chunks->count * offsetSize > chunks->room || uint64_t{runs->count} * 12 > runs->room) {
    return extent;
  }
  extent.isSound = true;
  EntryStream entries(file, chunks->entries, chunks->count, offsetSize);
  ChunkLengths lengths(file, *runs);
  for (uint32_t i = 0; i < chunks->count && extent.sampleCount < sizes->count(); ++i) {
    const uint64_t offset = ByteCursor(entries.next()).word(offsetSize == 8);
    const uint64_t samples = std::min(lengths.next(), sizes->count() - extent.sampleCount);
    const uint64_t bytes = sizes->take(samples);
    extent.sampleCount += samples;
    extent.end = std::max(extent.end, offset + std::min(bytes, ~offset));
  }
  return extent;
}

}  // namespace vantrel
