#include "platform/image/display_renderer.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/image/box_reduction.h"
#include "platform/image/display_transform.h"

namespace vantrel {

DisplayRenderer::DisplayRenderer(Bitmap bitmap)
    : m_bitmap(std::move(bitmap)), m_transform(std::make_unique<const Transform>(m_bitmap)) {}

DisplayRenderer::~DisplayRenderer() = default;

PixelRect DisplayRenderer::reducedSize(const PixelRect& area, int64_t reduction) {
  const auto reduced = [reduction](int64_t side) {
    return side / reduction + (side % reduction > 0 ? 1 : 0);
  };
  return {0, 0, reduced(area.width), reduced(area.height)};
}

void DisplayRenderer::render(const PixelRect& area, int64_t reduction, uint8_t* output,
                             size_t stride) const {
  if (area.width <= 0 || area.height <= 0) return;
  const auto pixelBytes = static_cast<size_t>(m_transform->layout().bytesPerPixel());
  std::vector<uint16_t> scratch;
  std::vector<std::byte> colors;
  if (m_transform->isIndexed()) colors.resize(static_cast<size_t>(area.width) * pixelBytes);
  const auto sourceRow = [&](int64_t y) {
    const std::byte* pixels = m_bitmap.pixel(area.x, y);
    if (!m_transform->isIndexed()) return pixels;
    m_transform->lookUp(pixels, area.width, colors.data());
    return static_cast<const std::byte*>(colors.data());
  };

  const int64_t bottom = area.y + area.height;
  if (reduction == 1) {
    for (int64_t y = area.y; y < bottom; ++y, output += stride) {
      m_transform->convert(sourceRow(y), area.width, output, scratch);
    }
    return;
  }
  BoxReduction box(m_transform->layout(), area.width, reduction);
  std::vector<std::byte> means(static_cast<size_t>(box.reducedWidth()) * pixelBytes);
  for (int64_t top = area.y; top < bottom; top += reduction, output += stride) {
    for (int64_t y = top; y < std::min(bottom, top + reduction); ++y) {
      box.addRow(sourceRow(y));
    }
    box.takeRow(means.data());
    m_transform->convert(means.data(), box.reducedWidth(), output, scratch);
  }
}

}  // namespace vantrel
