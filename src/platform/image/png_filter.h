#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantrel {

/// The filters that PNG applies to each row before compression (ISO/IEC 15948, clause 9). `row`
/// lies under the unfiltered row `above` (null at the top of the picture). What is written to
/// `output` is the filter's type and then as many bytes as the row has. One thread.
class PngFilter {
 public:
  /// For rows of `rowBytes` bytes whose complete pixels take `pixelBytes` bytes (1 for pixels below
  /// a byte).
  PngFilter(size_t rowBytes, size_t pixelBytes);

  /// Type None.
  void filterNone(const uint8_t* row, uint8_t* output) const;
  /// Type Up.
  void filterUp(const uint8_t* row, const uint8_t* above, uint8_t* output) const;
  /// The type whose filtered bytes, taken as signed, have the smallest sum of absolute values; of
  /// equal ones the first.
  void filterToLeastSum(const uint8_t* row, const uint8_t* above, uint8_t* output);

 private:
  size_t m_rowBytes;
  size_t m_pixelBytes;
  std::vector<uint8_t> m_top;
  std::vector<uint8_t> m_best, m_candidate;
};

}  // namespace vantrel
