#pragma once

// Private to this folder.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/image/lcms_ptr.h"

namespace vantrel {

/// Converts 16-bit RGB pixels to 8-bit sRGB, for profiles that are made of three curves and three
/// primaries. lcms2 sends such pixels through a table of colours, which is several times slower
/// and, near the edge of the target's gamut, off by up to 20 of 255. Immutable; any thread.
class MatrixShaper {
 public:
  /// Null when the profile holds anything but curves and primaries, or when they are damaged.
  [[nodiscard]] static std::unique_ptr<const MatrixShaper> make(const LcmsContext& context,
                                                                const LcmsProfile& profile);

  /// Converts `count` pixels of `channels` samples each, the first three of which are the colour,
  /// to four bytes each; the fourth is not written.
  void convert(const uint16_t* pixels, int channels, int64_t count, uint8_t* output) const;

 private:
  MatrixShaper() = default;

  /// Light from 0 to 1 for each value of red, green and blue.
  std::array<std::vector<float>, 3> m_light;
  /// From light in the source's primaries to light in those of sRGB, row by row.
  std::array<float, 9> m_matrix{};
  /// 8-bit sRGB for light in 65535 steps.
  std::vector<uint8_t> m_encoded;
};

}  // namespace vantrel
