#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantrel {

/// The filters that PNG applies to each row before compression (ISO/IEC 15948, clause 9). The type
/// chosen is the one whose filtered bytes, taken as signed, have the smallest sum of absolute
/// values; of equal ones the first. One thread.
class PngFilter {
 public:
  /// For rows of `rowBytes` bytes whose complete pixels take `pixelBytes` bytes (1 for pixels below
  /// a byte). With `adaptive` false every row gets type None.
  PngFilter(size_t rowBytes, size_t pixelBytes, bool adaptive);

  /// Filters `row` under the unfiltered row `above` it (null at the top of the picture). Writes the
  /// filter's type and then rowBytes bytes to `output`.
  void filter(const uint8_t* row, const uint8_t* above, uint8_t* output);

 private:
  size_t m_rowBytes;
  size_t m_pixelBytes;
  bool m_adaptive;
  std::vector<uint8_t> m_top;
  std::vector<uint8_t> m_best, m_candidate;
};

}  // namespace vantrel
