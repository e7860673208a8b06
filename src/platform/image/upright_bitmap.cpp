#include "platform/image/upright_bitmap.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "platform/image/image_reader.h"

namespace vantrel {
namespace {

// Side of the squares in which a turned picture is copied, so that both sides stay in the cache.
constexpr int64_t kTile = 32;

template <size_t Size>
void scatter(std::byte* to, std::ptrdiff_t columnStep, std::ptrdiff_t rowStep,
             const std::byte* from, std::ptrdiff_t fromColumn, std::ptrdiff_t fromRow,
             int64_t width, int64_t height) {
  for (int64_t tileY = 0; tileY < height; tileY += kTile) {
    const int64_t lastY = std::min(height, tileY + kTile);
    for (int64_t tileX = 0; tileX < width; tileX += kTile) {
      const int64_t lastX = std::min(width, tileX + kTile);
      for (int64_t y = tileY; y < lastY; ++y) {
        for (int64_t x = tileX; x < lastX; ++x) {
          std::memcpy(to + x * columnStep + y * rowStep, from + x * fromColumn + y * fromRow, Size);
        }
      }
    }
  }
}

using Scatter = void (*)(std::byte*, std::ptrdiff_t, std::ptrdiff_t, const std::byte*,
                         std::ptrdiff_t, std::ptrdiff_t, int64_t, int64_t);

Scatter scatterFor(int bytesPerPixel) {
  switch (bytesPerPixel) {
    case 1:
      return scatter<1>;
    case 2:
      return scatter<2>;
    case 3:
      return scatter<3>;
    case 4:
      return scatter<4>;
    case 5:
      return scatter<5>;
    case 6:
      return scatter<6>;
    case 8:
      return scatter<8>;
    case 10:
      return scatter<10>;
    case 12:
      return scatter<12>;
    case 16:
      return scatter<16>;
    case 20:
      return scatter<20>;
    default:
      return nullptr;
  }
}

}  // namespace

Orientation orientationFromTag(int64_t value) {
  return value >= 1 && value <= 8 ? static_cast<Orientation>(value) : Orientation::TopLeft;
}

bool swapsSides(Orientation orientation) {
  return orientation >= Orientation::LeftTop;
}

UprightBitmap::UprightBitmap(uint64_t storedWidth, uint64_t storedHeight, PixelLayout layout,
                             Orientation orientation)
    : m_storedWidth(static_cast<int64_t>(storedWidth)),
      m_storedHeight(static_cast<int64_t>(storedHeight)),
      m_layout(layout),
      m_orientation(orientation),
      m_width(swapsSides(orientation) ? m_storedHeight : m_storedWidth),
      m_height(swapsSides(orientation) ? m_storedWidth : m_storedHeight),
      m_stride(static_cast<size_t>(m_width) * static_cast<size_t>(layout.bytesPerPixel())) {
  if (!Bitmap::fits(storedWidth, storedHeight, layout.bytesPerPixel())) throw ImageDamaged();
  // Not initialised: pages that are never decoded into are never taken from the system.
  m_pixels = std::shared_ptr<std::byte>(new std::byte[m_stride * static_cast<size_t>(m_height)],
                                        std::default_delete<std::byte[]>());

  const std::ptrdiff_t pixel = layout.bytesPerPixel();
  const auto stride = static_cast<std::ptrdiff_t>(m_stride);
  const auto tag = static_cast<int>(orientation);
  const bool fromRight = tag == 2 || tag == 3 || tag == 6 || tag == 7;
  const bool fromBottom = tag == 3 || tag == 4 || tag == 7 || tag == 8;
  const std::ptrdiff_t acrossStep = fromRight ? -pixel : pixel;
  const std::ptrdiff_t downStep = fromBottom ? -stride : stride;
  m_columnStep = swapsSides(orientation) ? downStep : acrossStep;
  m_rowStep = swapsSides(orientation) ? acrossStep : downStep;
  m_origin = (fromRight ? (m_width - 1) * pixel : 0) + (fromBottom ? (m_height - 1) * stride : 0);
}

std::byte* UprightBitmap::address(int64_t x, int64_t y) {
  return m_pixels.get() + m_origin + x * m_columnStep + y * m_rowStep;
}

void UprightBitmap::put(int64_t x, int64_t y, int64_t width, int64_t height,
                        const std::byte* pixels, size_t stride) {
  width = std::min(width, m_storedWidth - x);
  height = std::min(height, m_storedHeight - y);
  if (width <= 0 || height <= 0) return;
  const std::ptrdiff_t pixel = m_layout.bytesPerPixel();
  if (m_columnStep == pixel) {
    for (int64_t line = 0; line < height; ++line) {
      std::memcpy(address(x, y + line), pixels + static_cast<size_t>(line) * stride,
                  static_cast<size_t>(width * pixel));
    }
    return;
  }
  scatterFor(m_layout.bytesPerPixel())(address(x, y), m_columnStep, m_rowStep, pixels, pixel,
                                       static_cast<std::ptrdiff_t>(stride), width, height);
}

void UprightBitmap::putSpaced(int64_t x, int64_t y, int64_t step, int64_t count,
                              const std::byte* pixels) {
  if (x >= m_storedWidth || y >= m_storedHeight) return;
  count = std::min(count, (m_storedWidth - x + step - 1) / step);
  const std::ptrdiff_t pixel = m_layout.bytesPerPixel();
  scatterFor(m_layout.bytesPerPixel())(address(x, y), m_columnStep * step, m_rowStep, pixels, pixel,
                                       0, count, 1);
}

Bitmap UprightBitmap::finish(BitmapColor color) {
  return Bitmap(m_width, m_height, m_layout, std::shared_ptr<const std::byte>(std::move(m_pixels)),
                m_stride, std::move(color));
}

}  // namespace vantrel
