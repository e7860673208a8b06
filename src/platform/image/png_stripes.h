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

/// How deflate looks for repetitions.
struct DeflateEffort {
  /// From 0 to 9, and one of zlib's strategies.
  int level;
  int strategy;
  /// Follows longer chains of candidates than the level alone would.
  bool patient;
};

/// Filters and compresses stripes, in any order, each as if it stood alone. One thread; several
/// compressors can share `rows`.
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
  /// What to deflate, and how.
  struct Plan {
    std::span<const uint8_t> filtered;
    DeflateEffort effort;
  };

  void filterRows(int64_t first, int64_t last, const std::stop_token& stop);
  [[nodiscard]] Plan choosePlan();
  [[nodiscard]] size_t sampleSize(const Plan& plan);
  /// `ending` is the flush mode of zlib for the last bytes. The result is valid until the next
  /// call.
  [[nodiscard]] std::span<const uint8_t> deflateAll(const Plan& plan, int ending,
                                                    const std::stop_token& stop);

  const PngRows& m_rows;
  PngStripes m_stripes;
  bool m_filtersHelp;
  PngFilter m_filter;
  /// The stripe with each row filtered to its least sum (or not at all, where filters don't help),
  /// and with all rows filtered by Up.
  std::vector<uint8_t> m_filtered, m_filteredUp;
  /// Room for the longest result so far: stripes that wait their turn hold only what they need.
  std::vector<uint8_t> m_deflated;
  std::vector<uint8_t> m_row, m_above;
  z_stream m_deflate{};
};

}  // namespace vantrel
