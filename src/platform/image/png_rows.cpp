#include "platform/image/png_rows.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "base/cancelled.h"
#include "platform/image/color_profile.h"

namespace vantrel {
namespace {

int colorTypeOf(const PixelLayout& layout) {
  if (layout.model == ColorModel::Indexed) return 3;
  return (layout.model == ColorModel::Rgb ? 2 : 0) + (layout.alpha ? 4 : 0);
}

uint8_t highestIndex(const Bitmap& bitmap, const PixelRect& area, const std::stop_token& stop) {
  uint8_t highest = 0;
  for (int64_t y = area.y; y < area.y + area.height; ++y) {
    throwIfCancelled(stop);
    const auto* row = reinterpret_cast<const uint8_t*>(bitmap.pixel(area.x, y));
    for (int64_t x = 0; x < area.width; ++x)
      highest = std::max(highest, row[x]);
  }
  return highest;
}

void swapWords(uint8_t* bytes, size_t size) {
  if constexpr (std::endian::native == std::endian::big) return;
  for (size_t i = 0; i + 1 < size; i += 2)
    std::swap(bytes[i], bytes[i + 1]);
}

}  // namespace

PngRows::PngRows(const Bitmap& bitmap, const PixelRect& area, const std::stop_token& stop)
    : m_bitmap(bitmap), m_area(area), m_conversion(PixelConversion::forPng(bitmap)) {
  const PixelLayout& layout = m_conversion.layout();
  m_colorType = colorTypeOf(layout);
  const int fileBits = bitmap.color().fileBits;
  if (layout.sample == SampleFormat::UInt16) {
    m_bitDepth = 16;
  } else if (layout.channels() == 1 && (fileBits == 1 || fileBits == 2 || fileBits == 4)) {
    m_bitDepth = fileBits;
  }
  const bool indexed = layout.model == ColorModel::Indexed;
  if (indexed) choosePalette(stop);
  const auto bits = static_cast<size_t>(layout.channels()) * static_cast<size_t>(m_bitDepth);
  m_rowBytes = (static_cast<size_t>(area.width) * bits + 7) / 8;
  const ColorModel space = indexed ? ColorModel::Rgb : layout.model;
  if (profileFits(m_conversion.iccProfile(), space)) m_iccProfile = m_conversion.iccProfile();
}

size_t PngRows::pixelBytes() const {
  return static_cast<size_t>(std::max(m_conversion.layout().channels() * m_bitDepth / 8, 1));
}

// A pixel past the palette is opaque black; in a PNG it must have an entry that says so.
void PngRows::choosePalette(const std::stop_token& stop) {
  m_palette = m_bitmap.color().palette;
  const size_t needed = size_t{highestIndex(m_bitmap, m_area, stop)} + 1;
  if (m_palette.size() < needed) m_palette.resize(needed);
  while (m_palette.size() > size_t{1} << m_bitDepth)
    m_bitDepth *= 2;
}

const uint8_t* PngRows::row(int64_t y, uint8_t* scratch) const {
  const std::byte* pixels = m_bitmap.pixel(m_area.x, m_area.y + y);
  if (m_bitDepth < 8) {
    pack(pixels, scratch);
    return scratch;
  }
  if (m_bitDepth == 8 && m_conversion.isIdentity()) {
    return reinterpret_cast<const uint8_t*>(pixels);
  }
  m_conversion.convert(pixels, reinterpret_cast<std::byte*>(scratch), m_area.width);
  if (m_bitDepth == 16) swapWords(scratch, m_rowBytes);
  return scratch;
}

// Indices are packed as they are; grey samples, scaled up to 8 bits, give back their high bits.
void PngRows::pack(const std::byte* samples, uint8_t* row) const {
  const int shift = m_colorType == 3 ? 0 : 8 - m_bitDepth;
  std::memset(row, 0, m_rowBytes);
  for (int64_t x = 0; x < m_area.width; ++x) {
    const int64_t bit = x * m_bitDepth;
    const int value = std::to_integer<int>(samples[x]) >> shift;
    row[bit / 8] = static_cast<uint8_t>(row[bit / 8] | value << (8 - m_bitDepth - bit % 8));
  }
}

}  // namespace vantrel
