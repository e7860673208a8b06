#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vantrel {

/// What the channels of a pixel mean, in the order in which they lie in memory. Cmyk counts ink: 0
/// is bare paper. Lab is encoded as in ICC version 4 (8 bits: L × 255/100, a + 128, b + 128).
/// Indexed has one channel, a position in the bitmap's palette.
enum class ColorModel : uint8_t { Gray, Rgb, Cmyk, Lab, Indexed };

/// Samples are in the machine's byte order. Float32 samples run from 0 to 1 for black to full.
enum class SampleFormat : uint8_t { UInt8, UInt16, Float32 };

/// How one pixel lies in memory: the interleaved channels of its model, then the alpha channel if
/// there is one. Alpha is straight, never premultiplied; full is opaque.
struct PixelLayout {
  ColorModel model = ColorModel::Rgb;
  SampleFormat sample = SampleFormat::UInt8;
  bool alpha = false;

  /// Channels without alpha: 1, 3 or 4.
  [[nodiscard]] int colorChannels() const;
  /// Channels with alpha.
  [[nodiscard]] int channels() const { return colorChannels() + (alpha ? 1 : 0); }
  /// 1, 2 or 4.
  [[nodiscard]] int bytesPerSample() const;
  [[nodiscard]] int bytesPerPixel() const { return channels() * bytesPerSample(); }

  friend bool operator==(const PixelLayout&, const PixelLayout&) = default;
};

/// A colour of a palette, 8 bits a channel, alpha straight.
struct PaletteEntry {
  uint8_t red = 0, green = 0, blue = 0, alpha = 255;
  friend bool operator==(const PaletteEntry&, const PaletteEntry&) = default;
};

/// A rectangle of whole pixels with its origin at the top left; half open on the right and below.
struct PixelRect {
  int64_t x = 0, y = 0, width = 0, height = 0;
  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// What belongs to the pixels beside their samples; it stays with every crop of them.
struct BitmapColor {
  /// The ICC profile that gives the samples their meaning; empty: sRGB, or grey with the sRGB
  /// curve, or uncalibrated ink.
  std::vector<uint8_t> iccProfile;
  /// Of an Indexed bitmap: 1 to 256 entries; empty otherwise. A pixel past the end counts as opaque
  /// black.
  std::vector<PaletteEntry> palette;
  /// True when the file's palette carries alpha, used or not.
  bool paletteHasAlpha = false;
  /// Bits a sample had in the file where that is fewer than memory holds (Gray and Indexed: 1, 2,
  /// 4; 16-bit samples: 10, 12); 0 when the same. Gray samples are scaled up to the full range in
  /// memory, indices are not.
  int fileBits = 0;
};

/// A decoded picture: upright, immutable, shared by copies. It can be read from any thread.
class Bitmap {
 public:
  /// An empty bitmap of 0 × 0.
  Bitmap() = default;

  /// A picture over memory that `pixels` keeps alive; rows are `stride` bytes apart and at least
  /// width × bytesPerPixel bytes long. Pixels must not change any more.
  Bitmap(int64_t width, int64_t height, PixelLayout layout, std::shared_ptr<const std::byte> pixels,
         size_t stride, BitmapColor color);

  /// Most bytes that a decoded picture may take: 4 GiB.
  static constexpr uint64_t kMostBytes = uint64_t{4} << 30;

  /// True when width and height are at least 1 and the pixels fit in kMostBytes; cannot overflow.
  [[nodiscard]] static bool fits(uint64_t width, uint64_t height, int bytesPerPixel);

  [[nodiscard]] int64_t width() const { return m_width; }
  [[nodiscard]] int64_t height() const { return m_height; }
  [[nodiscard]] bool isEmpty() const { return m_width == 0 || m_height == 0; }
  [[nodiscard]] PixelRect bounds() const { return {0, 0, m_width, m_height}; }
  [[nodiscard]] const PixelLayout& layout() const { return m_layout; }
  [[nodiscard]] size_t stride() const { return m_stride; }
  /// The first byte of row y, 0 ≤ y < height.
  [[nodiscard]] const std::byte* row(int64_t y) const {
    return m_pixels.get() + static_cast<size_t>(y) * m_stride;
  }
  /// The first byte of pixel (x, y).
  [[nodiscard]] const std::byte* pixel(int64_t x, int64_t y) const {
    return row(y) + static_cast<size_t>(x) * static_cast<size_t>(m_layout.bytesPerPixel());
  }
  [[nodiscard]] const BitmapColor& color() const { return *m_color; }
  /// True when the layout has an alpha channel or the palette carries alpha; pixels are not looked
  /// at.
  [[nodiscard]] bool hasAlpha() const;

 private:
  int64_t m_width = 0;
  int64_t m_height = 0;
  PixelLayout m_layout;
  std::shared_ptr<const std::byte> m_pixels;
  size_t m_stride = 0;
  std::shared_ptr<const BitmapColor> m_color = std::make_shared<const BitmapColor>();
};

}  // namespace vantrel
