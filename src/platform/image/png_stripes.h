#pragma once

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <stop_token>
#include <vector>

#include "platform/image/png_filter.h"
#include "platform/image/png_rows.h"

namespace vantrel {

/// How a picture is divided into stripes of whole rows. It depends on the picture alone, and so
/// does every byte that comes out of a stripe.
struct PngStripes {
  explicit PngStripes(const PngRows& rows);

  int64_t rowsPerStripe;
  int64_t count;
  /// Filtered bytes of a full stripe.
  size_t bytes;
};

/// One stripe, filtered and compressed: a piece of a raw deflate stream (RFC 1951) that ends at a
/// byte, to be joined with those of the other stripes.
struct CompressedStripe {
  std::vector<uint8_t> deflated;
  /// Adler-32 (RFC 1950) and number of the filtered bytes.
  uint32_t checksum = 1;
  uint64_t bytes = 0;
};

/// Filters and compresses stripes, in any order. One thread; several compressors can share `rows`.
class PngStripeCompressor {
 public:
  /// `rows` must outlive the compressor. Throws std::bad_alloc.
  explicit PngStripeCompressor(const PngRows& rows);
  ~PngStripeCompressor();
  PngStripeCompressor(const PngStripeCompressor&) = delete;
  PngStripeCompressor& operator=(const PngStripeCompressor&) = delete;

  /// Throws Cancelled, std::bad_alloc.
  [[nodiscard]] CompressedStripe compress(int64_t stripe, const std::stop_token& stop);

 private:
  void filterRows(int64_t first, int64_t last, const std::stop_token& stop);
  void restart(int level, std::span<const uint8_t> window);
  [[nodiscard]] std::vector<uint8_t> deflateAll(std::span<const uint8_t> bytes, int ending,
                                                const std::stop_token& stop);

  const PngRows& m_rows;
  PngStripes m_stripes;
  PngFilter m_filter;
  /// Filtered rows: those of the window before the stripe, then the stripe's own.
  std::vector<uint8_t> m_filtered;
  std::vector<uint8_t> m_row, m_above;
  z_stream m_deflate{};
};

}  // namespace vantrel
