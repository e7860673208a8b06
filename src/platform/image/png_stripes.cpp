#include "platform/image/png_stripes.h"

#include <algorithm>
#include <new>

#include "base/cancelled.h"

namespace vantrel {
namespace {

constexpr size_t kStripeBytes = size_t{512} << 10;
/// How far back deflate can refer.
constexpr size_t kWindowBytes = size_t{32} << 10;
/// Between two looks at the stop token.
constexpr size_t kBytesBetweenChecks = size_t{256} << 10;

constexpr int kLevel = 4;
constexpr int kMemoryLevel = 9;
/// Without the header and checksum of zlib, which belong to the joined stream.
constexpr int kRawDeflate = -15;

/// Type byte and pixels.
size_t filteredRowBytes(const PngRows& rows) {
  return rows.rowBytes() + 1;
}

bool filtersHelp(const PngRows& rows) {
  return rows.bitDepth() >= 8 && rows.colorType() != 3;
}

}  // namespace

PngStripes::PngStripes(const PngRows& rows)
    : rowsPerStripe(std::clamp<int64_t>(static_cast<int64_t>(kStripeBytes / filteredRowBytes(rows)),
                                        1, rows.height())),
      count((rows.height() + rowsPerStripe - 1) / rowsPerStripe),
      bytes(static_cast<size_t>(rowsPerStripe) * filteredRowBytes(rows)) {}

PngStripeCompressor::PngStripeCompressor(const PngRows& rows)
    : m_rows(rows),
      m_stripes(rows),
      m_filter(rows.rowBytes(), rows.pixelBytes(), filtersHelp(rows)),
      m_row(rows.rowBytes()),
      m_above(rows.rowBytes()) {
  const int strategy = filtersHelp(rows) ? Z_FILTERED : Z_DEFAULT_STRATEGY;
  if (deflateInit2(&m_deflate, kLevel, Z_DEFLATED, kRawDeflate, kMemoryLevel, strategy) != Z_OK) {
    throw std::bad_alloc();
  }
}

PngStripeCompressor::~PngStripeCompressor() {
  deflateEnd(&m_deflate);
}

CompressedStripe PngStripeCompressor::compress(int64_t stripe, const std::stop_token& stop) {
  const size_t rowSize = filteredRowBytes(m_rows);
  const int64_t first = stripe * m_stripes.rowsPerStripe;
  const int64_t last = std::min(first + m_stripes.rowsPerStripe, m_rows.height());
  const auto windowRows = static_cast<int64_t>((kWindowBytes + rowSize - 1) / rowSize);
  const int64_t windowFirst = std::max<int64_t>(first - windowRows, 0);
  filterRows(windowFirst, last, stop);

  const size_t before = static_cast<size_t>(first - windowFirst) * rowSize;
  const uint8_t* bytes = m_filtered.data() + before;
  size_t left = m_filtered.size() - before;
  CompressedStripe result;
  result.bytes = left;
  result.checksum = static_cast<uint32_t>(adler32_z(1, bytes, left));

  deflateReset(&m_deflate);
  if (before > 0) {
    const size_t window = std::min(before, kWindowBytes);
    deflateSetDictionary(&m_deflate, bytes - window, static_cast<uInt>(window));
  }
  // With room for the mark that a sync flush leaves.
  result.deflated.resize(deflateBound(&m_deflate, static_cast<uLong>(left)) + 16);
  m_deflate.next_out = result.deflated.data();
  size_t room = result.deflated.size();
  const int ending = last == m_rows.height() ? Z_FINISH : Z_SYNC_FLUSH;
  while (left > 0) {
    throwIfCancelled(stop);
    const size_t part = std::min(left, kBytesBetweenChecks);
    const size_t roomForPart = std::min<size_t>(room, UINT32_MAX);
    m_deflate.next_in = const_cast<Bytef*>(bytes);
    m_deflate.avail_in = static_cast<uInt>(part);
    m_deflate.avail_out = static_cast<uInt>(roomForPart);
    left -= part;
    deflate(&m_deflate, left > 0 ? Z_NO_FLUSH : ending);
    bytes += part;
    room -= roomForPart - m_deflate.avail_out;
  }
  result.deflated.resize(result.deflated.size() - room);
  return result;
}

void PngStripeCompressor::filterRows(int64_t first, int64_t last, const std::stop_token& stop) {
  const size_t rowSize = filteredRowBytes(m_rows);
  m_filtered.resize(static_cast<size_t>(last - first) * rowSize);
  uint8_t* output = m_filtered.data();
  const uint8_t* above = first > 0 ? m_rows.row(first - 1, m_above.data()) : nullptr;
  for (int64_t y = first; y < last; ++y, output += rowSize) {
    throwIfCancelled(stop);
    const uint8_t* row = m_rows.row(y, m_row.data());
    m_filter.filter(row, above, output);
    above = row;
    // If the row lies in the scratch, the next one must not overwrite it.
    m_row.swap(m_above);
  }
}

}  // namespace vantrel
