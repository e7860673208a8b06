#include "platform/image/bitmap.h"

#include <utility>

namespace vantrel {

int PixelLayout::colorChannels() const {
  switch (model) {
    case ColorModel::Gray:
    case ColorModel::Indexed:
      return 1;
    case ColorModel::Rgb:
    case ColorModel::Lab:
      return 3;
    case ColorModel::Cmyk:
      return 4;
  }
  return 0;
}

int PixelLayout::bytesPerSample() const {
  switch (sample) {
    case SampleFormat::UInt8:
      return 1;
    case SampleFormat::UInt16:
      return 2;
    case SampleFormat::Float32:
      return 4;
  }
  return 0;
}

Bitmap::Bitmap(int64_t width, int64_t height, PixelLayout layout,
               std::shared_ptr<const std::byte> pixels, size_t stride, BitmapColor color)
    : m_width(width),
      m_height(height),
      m_layout(layout),
      m_pixels(std::move(pixels)),
      m_stride(stride),
      m_color(std::make_shared<const BitmapColor>(std::move(color))) {}

bool Bitmap::fits(uint64_t width, uint64_t height, int bytesPerPixel) {
  if (width == 0 || height == 0) return false;
  const uint64_t pixels = kMostBytes / static_cast<uint64_t>(bytesPerPixel);
  return width <= pixels && height <= pixels / width;
}

bool Bitmap::hasAlpha() const {
  return m_layout.alpha || m_color->paletteHasAlpha;
}

}  // namespace vantrel
