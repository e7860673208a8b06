#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/image/bitmap.h"

namespace vantrel {

/// How a stored picture is turned and mirrored to stand upright: the values of the EXIF and TIFF
/// tag Orientation (TIFF 6.0, tag 274).
enum class Orientation : uint8_t {
  TopLeft = 1,
  TopRight,
  BottomRight,
  BottomLeft,
  LeftTop,
  RightTop,
  RightBottom,
  LeftBottom
};

/// The orientation with this tag value; TopLeft for any value that is none.
[[nodiscard]] Orientation orientationFromTag(int64_t value);

/// Whether the upright picture has width and height exchanged.
[[nodiscard]] bool swapsSides(Orientation orientation);

/// A bitmap in the making: decoders hand over pixels where the file stores them, and they land
/// where the upright picture has them, so that a turned picture takes no second copy. One thread.
class UprightBitmap {
 public:
  /// Takes memory for a stored picture of width × height. Throws ImageDamaged when Bitmap::fits
  /// fails, std::bad_alloc.
  UprightBitmap(uint64_t storedWidth, uint64_t storedHeight, PixelLayout layout,
                Orientation orientation);

  /// True when stored and upright grid are the same, so that rows may be decoded straight into
  /// row().
  [[nodiscard]] bool isDirect() const { return m_orientation == Orientation::TopLeft; }
  /// Row y of the upright picture.
  [[nodiscard]] std::byte* row(int64_t y) {
    return m_pixels.get() + static_cast<size_t>(y) * m_stride;
  }
  [[nodiscard]] size_t stride() const { return m_stride; }

  /// Puts a block of stored pixels, its top left corner at stored (x, y) and its rows `stride`
  /// bytes apart. What lies outside the picture is left out.
  void put(int64_t x, int64_t y, int64_t width, int64_t height, const std::byte* pixels,
           size_t stride);
  /// Puts pixels of one stored row that lie `step` columns apart, as an interlaced pass holds them.
  void putSpaced(int64_t x, int64_t y, int64_t step, int64_t count, const std::byte* pixels);

  /// Hands the pixels over; nothing may be put after that.
  [[nodiscard]] Bitmap finish(BitmapColor color);

 private:
  /// Upright address of stored (x, y), and the byte steps to the next stored column and row.
  [[nodiscard]] std::byte* address(int64_t x, int64_t y);

  int64_t m_storedWidth, m_storedHeight;
  PixelLayout m_layout;
  Orientation m_orientation;
  int64_t m_width, m_height;
  size_t m_stride;
  std::ptrdiff_t m_columnStep = 0, m_rowStep = 0;
  std::ptrdiff_t m_origin = 0;
  std::shared_ptr<std::byte> m_pixels;
};

}  // namespace vantrel
