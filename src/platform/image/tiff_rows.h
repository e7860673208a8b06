#pragma once

// Private to this folder: turns rows of TIFF samples into rows of a bitmap.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/image/tiff_picture.h"

namespace vantrel {

/// Converts rows that libtiff has decoded: bytes in the machine's order, samples of other than
/// whole bytes packed from the highest bit on. One thread.
class TiffRows {
 public:
  /// `picture`, not of TiffColors::Library, must outlive the converter.
  explicit TiffRows(const TiffPicture& picture);

  /// True when the samples of a file's row are those of the bitmap, byte for byte.
  [[nodiscard]] bool areIdentical() const { return m_identical; }

  /// Converts `count` pixels to picture.layout. `rows` holds one row with all samples, or, for
  /// separate planes, one row for each of picture.wantedSamples().
  void convert(std::span<const std::byte* const> rows, int64_t count, std::byte* pixels);

 private:
  template <typename Sample>
  void convertAs(std::span<const std::byte* const> rows, int64_t count, Sample* pixels);
  template <typename Sample>
  void lookUp(const std::byte* row, int64_t count, Sample* pixels);

  const TiffPicture& m_picture;
  std::vector<int> m_wanted;
  bool m_identical;
  std::vector<uint16_t> m_indices;
};

}  // namespace vantrel
