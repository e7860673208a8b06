#pragma once

#include <cstdint>
#include <vector>

#include "platform/image/bitmap.h"

namespace vantrel {

/// Reduces rows of pixels to one row: each result is the mean of `reduction` columns of all rows
/// added, alpha-weighted. Floating-point samples are limited to the range from 0 to 1. For the
/// layouts of Gray, Rgb, Cmyk and Lab. One thread.
class BoxReduction {
 public:
  /// For rows of `width` pixels.
  BoxReduction(PixelLayout layout, int64_t width, int64_t reduction);

  [[nodiscard]] int64_t reducedWidth() const { return m_reducedWidth; }

  void addRow(const std::byte* pixels);
  /// Writes the means, reducedWidth() pixels in the layout of the source, and starts afresh. At
  /// least one row has been added.
  void takeRow(std::byte* pixels);

 private:
  /// Adds m_columns to m_sums and starts them afresh.
  void foldColumns();

  PixelLayout m_layout;
  int64_t m_width;
  int64_t m_reduction;
  int64_t m_reducedWidth;
  int64_t m_rows = 0;
  /// Sums for each reduced pixel: its colour channels, multiplied by alpha if there is one, then
  /// alpha. Of these two one is in use.
  std::vector<uint64_t> m_sums;
  std::vector<double> m_floatSums;
  /// Of integers without alpha, rows are added up before columns: sums for each sample of a row,
  /// and the rows that are in them.
  std::vector<uint32_t> m_columns;
  int64_t m_columnRows = 0;
};

}  // namespace vantrel
