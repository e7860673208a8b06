#include "platform/image/png_stripes.h"

#include <algorithm>
#include <new>
#include <span>

#include "base/cancelled.h"

namespace vantrel {
namespace {

constexpr size_t kStripeBytes = size_t{512} << 10;
/// Between two looks at the stop token.
constexpr size_t kBytesBetweenChecks = size_t{256} << 10;

// Drawn pictures (screens, text) gain from more effort, and it costs little on them. Photographs
// would gain little for several times the work.
constexpr DeflateEffort kDrawn{6, Z_FILTERED, false};
// What a camera or a lossy codec has smoothed repeats in short pieces from row to row. One filter
// for all rows keeps these repetitions, and patience finds them.
constexpr DeflateEffort kSmooth{4, Z_DEFAULT_STRATEGY, true};
// In noise such pieces are accidents that cost more than they save, which is what Z_FILTERED leaves
// out.
constexpr DeflateEffort kNoise{4, Z_FILTERED, false};
constexpr DeflateEffort kUnfiltered{6, Z_DEFAULT_STRATEGY, false};

/// Share of zeros among the filtered bytes from which a stripe counts as drawn.
constexpr double kDrawnZeros = 0.8;
/// Bytes from the middle of a stripe that are tried with both plans for photographs.
constexpr size_t kSampleBytes = size_t{16} << 10;
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

bool isDrawn(std::span<const uint8_t> filtered) {
  const auto zeros = std::count(filtered.begin(), filtered.end(), uint8_t{0});
  return static_cast<double>(zeros) >= kDrawnZeros * static_cast<double>(filtered.size());
}

void restart(z_stream& stream, const DeflateEffort& effort) {
  // Shortest repetition that ends the search for a good one, that ends the look one byte ahead,
  // that ends all search; and candidates that are looked at.
  constexpr int good = 4, lazy = 5, nice = 28, chain = 28;
  deflateReset(&stream);
  deflateParams(&stream, effort.level, effort.strategy);
  if (effort.patient) deflateTune(&stream, good, lazy, nice, chain);
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
      m_filtersHelp(filtersHelp(rows)),
      m_filter(rows.rowBytes(), rows.pixelBytes()),
      m_row(rows.rowBytes()),
      m_above(rows.rowBytes()) {
  if (deflateInit2(&m_deflate, kNoise.level, Z_DEFLATED, kRawDeflate, kMemoryLevel,
                   kNoise.strategy) != Z_OK) {
    throw std::bad_alloc();
  }
}

PngStripeCompressor::~PngStripeCompressor() {
  deflateEnd(&m_deflate);
}

CompressedStripe PngStripeCompressor::compress(int64_t stripe, const std::stop_token& stop) {
  const int64_t first = stripe * m_stripes.rowsPerStripe;
  const int64_t last = std::min(first + m_stripes.rowsPerStripe, m_rows.height());
  filterRows(first, last, stop);
  const Plan plan = choosePlan();
  CompressedStripe result;
  result.bytes = plan.filtered.size();
  result.checksum = static_cast<uint32_t>(adler32_z(1, plan.filtered.data(), plan.filtered.size()));
  const auto deflated = deflateAll(plan, last == m_rows.height() ? Z_FINISH : Z_SYNC_FLUSH, stop);
  result.deflated.assign(deflated.begin(), deflated.end());
  return result;
}

void PngStripeCompressor::filterRows(int64_t first, int64_t last, const std::stop_token& stop) {
  const size_t rowSize = filteredRowBytes(m_rows);
  const size_t size = static_cast<size_t>(last - first) * rowSize;
  m_filtered.resize(size);
  if (m_filtersHelp) m_filteredUp.resize(size);
  const uint8_t* above = first > 0 ? m_rows.row(first - 1, m_above.data()) : nullptr;
  for (size_t offset = 0; offset < size; offset += rowSize) {
    throwIfCancelled(stop);
    const uint8_t* row = m_rows.row(first++, m_row.data());
    if (m_filtersHelp) {
      m_filter.filterToLeastSum(row, above, m_filtered.data() + offset);
      m_filter.filterUp(row, above, m_filteredUp.data() + offset);
    } else {
      m_filter.filterNone(row, m_filtered.data() + offset);
    }
    above = row;
    // If the row lies in the scratch, the next one must not overwrite it.
    m_row.swap(m_above);
  }
}

// Seen from the stripe alone, so that the result does not depend on what was compressed before.
PngStripeCompressor::Plan PngStripeCompressor::choosePlan() {
  if (!m_filtersHelp) return {m_filtered, kUnfiltered};
  if (isDrawn(m_filtered)) return {m_filtered, kDrawn};
  const Plan noise{m_filtered, kNoise};
  const Plan smooth{m_filteredUp, kSmooth};
  return sampleSize(smooth) < sampleSize(noise) ? smooth : noise;
}

size_t PngStripeCompressor::sampleSize(const Plan& plan) {
  const size_t size = std::min(plan.filtered.size(), kSampleBytes);
  const auto sample = plan.filtered.subspan((plan.filtered.size() - size) / 2, size);
  return deflateAll({sample, plan.effort}, Z_FINISH, {}).size();
}

std::span<const uint8_t> PngStripeCompressor::deflateAll(const Plan& plan, int ending,
                                                         const std::stop_token& stop) {
  // The bound does not count the mark that a sync flush leaves.
  constexpr size_t kFlushMark = 16;
  restart(m_deflate, plan.effort);
  std::span<const uint8_t> bytes = plan.filtered;
  const size_t bound = deflateBound(&m_deflate, static_cast<uLong>(bytes.size())) + kFlushMark;
  if (m_deflated.size() < bound) m_deflated.resize(bound);
  size_t size = 0;
  while (!bytes.empty()) {
    throwIfCancelled(stop);
    const size_t part = std::min(bytes.size(), kBytesBetweenChecks);
    const size_t room = std::min<size_t>(m_deflated.size() - size, UINT32_MAX);
    m_deflate.next_in = const_cast<Bytef*>(bytes.data());
    m_deflate.avail_in = static_cast<uInt>(part);
    m_deflate.next_out = m_deflated.data() + size;
    m_deflate.avail_out = static_cast<uInt>(room);
    bytes = bytes.subspan(part);
    deflate(&m_deflate, bytes.empty() ? ending : Z_NO_FLUSH);
    size += room - m_deflate.avail_out;
  }
  return std::span(m_deflated).first(size);
}

}  // namespace vantrel
