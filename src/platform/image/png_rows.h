#pragma once

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <vector>

#include "platform/image/bitmap.h"
#include "platform/image/pixel_conversion.h"

namespace vantrel {

/// A part of a bitmap as PNG holds it before filtering: packed pixels below a byte, 16-bit samples
/// with the high byte first. Immutable; any number of threads may read rows.
class PngRows {
 public:
  /// Looks at the indices of an Indexed bitmap. Throws Cancelled, std::bad_alloc.
  PngRows(const Bitmap& bitmap, const PixelRect& area, const std::stop_token& stop);

  [[nodiscard]] int64_t width() const { return m_area.width; }
  [[nodiscard]] int64_t height() const { return m_area.height; }
  /// Colour type of the header: 0 grey, 2 Rgb, 3 palette, 4 grey with alpha, 6 Rgb with alpha.
  [[nodiscard]] int colorType() const { return m_colorType; }
  /// 1, 2, 4, 8 or 16 bits a sample.
  [[nodiscard]] int bitDepth() const { return m_bitDepth; }
  [[nodiscard]] size_t rowBytes() const { return m_rowBytes; }
  /// Bytes of a complete pixel; 1 for pixels below a byte.
  [[nodiscard]] size_t pixelBytes() const;
  /// Of colour type 3: as many entries as the pixels of the part and the palette itself need.
  [[nodiscard]] const std::vector<PaletteEntry>& palette() const { return m_palette; }
  [[nodiscard]] bool paletteHasAlpha() const { return m_bitmap.color().paletteHasAlpha; }
  /// The ICC profile for the pixels; empty when there is none that fits them.
  [[nodiscard]] const std::vector<uint8_t>& iccProfile() const { return m_iccProfile; }

  /// The bytes of row y of the part: either in the bitmap itself or in `scratch`, which has room
  /// for rowBytes().
  [[nodiscard]] const uint8_t* row(int64_t y, uint8_t* scratch) const;

 private:
  void choosePalette(const std::stop_token& stop);
  void pack(const std::byte* samples, uint8_t* row) const;

  Bitmap m_bitmap;
  PixelRect m_area;
  PixelConversion m_conversion;
  std::vector<uint8_t> m_iccProfile;
  std::vector<PaletteEntry> m_palette;
  int m_colorType = 0;
  int m_bitDepth = 8;
  size_t m_rowBytes = 0;
};

}  // namespace vantrel
