#include "platform/image/png_stripes.h"

#include <algorithm>
#include <new>
#include <span>

#include "base/cancelled.h"

namespace vantrel {
namespace {

constexpr size_t kStripeBytes = size_t{512} << 10;
/// How far back deflate can refer.
constexpr size_t kWindowBytes = size_t{32} << 10;
/// Between two looks at the stop token.
constexpr size_t kBytesBetweenChecks = size_t{256} << 10;

/// Photographs gain a hundredth of their size from more effort than this, for several times the
/// work.
constexpr int kPhotoLevel = 4;
/// Drawn pictures (screens, text) gain more from more effort, and it costs little on them.
constexpr int kDrawnLevel = 6;
/// Share of zeros among the filtered bytes from which a stripe counts as drawn.
constexpr double kDrawnZeros = 0.8;
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

int strategyFor(const PngRows& rows) {
  return filtersHelp(rows) ? Z_FILTERED : Z_DEFAULT_STRATEGY;
}

/// Seen from the stripe alone, so that the result does not depend on what was compressed before.
int levelFor(const PngRows& rows, std::span<const uint8_t> filtered) {
  if (!filtersHelp(rows)) return kDrawnLevel;
  const auto zeros = std::count(filtered.begin(), filtered.end(), uint8_t{0});
  const auto share = static_cast<double>(zeros) / static_cast<double>(filtered.size());
  return share >= kDrawnZeros ? kDrawnLevel : kPhotoLevel;
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
  if (deflateInit2(&m_deflate, kPhotoLevel, Z_DEFLATED, kRawDeflate, kMemoryLevel,
                   strategyFor(rows)) != Z_OK) {
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
  const size_t window = std::min(before, kWindowBytes);
  const std::span<const uint8_t> filtered(m_filtered);
  const std::span<const uint8_t> own = filtered.subspan(before);
  CompressedStripe result;
  result.bytes = own.size();
  result.checksum = static_cast<uint32_t>(adler32_z(1, own.data(), own.size()));
  restart(levelFor(m_rows, own), filtered.subspan(before - window, window));
  result.deflated = deflateAll(own, last == m_rows.height() ? Z_FINISH : Z_SYNC_FLUSH, stop);
  return result;
}

void PngStripeCompressor::restart(int level, std::span<const uint8_t> window) {
  deflateReset(&m_deflate);
  deflateParams(&m_deflate, level, strategyFor(m_rows));
  if (window.empty()) return;
  deflateSetDictionary(&m_deflate, window.data(), static_cast<uInt>(window.size()));
}

std::vector<uint8_t> PngStripeCompressor::deflateAll(std::span<const uint8_t> bytes, int ending,
                                                     const std::stop_token& stop) {
  // The bound does not count the mark that a sync flush leaves.
  constexpr size_t kFlushMark = 16;
  std::vector<uint8_t> output(deflateBound(&m_deflate, static_cast<uLong>(bytes.size())) +
                              kFlushMark);
  size_t size = 0;
  while (!bytes.empty()) {
    throwIfCancelled(stop);
    const size_t part = std::min(bytes.size(), kBytesBetweenChecks);
    const size_t room = std::min<size_t>(output.size() - size, UINT32_MAX);
    m_deflate.next_in = const_cast<Bytef*>(bytes.data());
    m_deflate.avail_in = static_cast<uInt>(part);
    m_deflate.next_out = output.data() + size;
    m_deflate.avail_out = static_cast<uInt>(room);
    bytes = bytes.subspan(part);
    deflate(&m_deflate, bytes.empty() ? ending : Z_NO_FLUSH);
    size += room - m_deflate.avail_out;
  }
  output.resize(size);
  // Most of the bound is never used; stripes that wait their turn should not hold it.
  output.shrink_to_fit();
  return output;
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
