#include "platform/movie/component_reader.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <bit>
#include <cstring>

namespace vantrel {
namespace {

/// Every `step`-th byte.
template <int step>
void gatherBytes(const uint8_t* source, int width, uint8_t* target) {
  for (int x = 0; x < width; ++x)
    target[x] = source[x * step];
}

void gatherBytes(const uint8_t* source, int step, int width, uint8_t* target) {
  switch (step) {
    case 1:
      std::memcpy(target, source, static_cast<size_t>(width));
      return;
    case 2:
      gatherBytes<2>(source, width, target);
      return;
    case 3:
      gatherBytes<3>(source, width, target);
      return;
    case 4:
      gatherBytes<4>(source, width, target);
      return;
    default:
      for (int x = 0; x < width; ++x)
        target[x] = source[static_cast<ptrdiff_t>(x) * step];
  }
}

/// The component's bits of every `step`-th byte and the one behind it; as far apart as the
/// component tells if `step` is 0.
template <bool swaps, int step, class Sample>
void gatherWords(const uint8_t* source, const AVComponentDescriptor& component, int width,
                 uint8_t* target) {
  const int shift = component.shift, distance = step > 0 ? step : component.step;
  const auto mask = static_cast<uint16_t>((1U << component.depth) - 1);
  for (int x = 0; x < width; ++x) {
    uint16_t word = 0;
    std::memcpy(&word, source + static_cast<ptrdiff_t>(x) * distance, sizeof word);
    if constexpr (swaps) word = __builtin_bswap16(word);
    const auto sample = static_cast<Sample>(word >> shift & mask);
    std::memcpy(target + static_cast<size_t>(x) * sizeof sample, &sample, sizeof sample);
  }
}

template <bool swaps, class Sample>
void gatherWords(const uint8_t* source, const AVComponentDescriptor& component, int width,
                 uint8_t* target) {
  switch (component.step) {
    case 2:
      return gatherWords<swaps, 2, Sample>(source, component, width, target);
    case 4:
      return gatherWords<swaps, 4, Sample>(source, component, width, target);
    case 6:
      return gatherWords<swaps, 6, Sample>(source, component, width, target);
    case 8:
      return gatherWords<swaps, 8, Sample>(source, component, width, target);
    default:
      return gatherWords<swaps, 0, Sample>(source, component, width, target);
  }
}

template <bool swaps>
void gatherWords(const uint8_t* source, const AVComponentDescriptor& component, int width,
                 uint8_t* target) {
  if (component.depth > 8)
    gatherWords<swaps, uint16_t>(source, component, width, target);
  else
    gatherWords<swaps, uint8_t>(source, component, width, target);
}

/// Components that end within eight bits are read as single bytes, of two the one behind `offset`
/// if the format is big-endian.
bool isReadAsByte(const AVComponentDescriptor& component) {
  return component.shift + component.depth <= 8;
}

}  // namespace

ComponentReader::ComponentReader(const AVFrame& frame, int component)
    : m_frame(frame),
      m_descriptor(*av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format))),
      m_component(component) {
  if (m_descriptor.flags & AV_PIX_FMT_FLAG_PAL) {
    m_component = 0;
    m_paletteComponent = component;
  }
  makeTable();
}

void ComponentReader::makeTable() {
  const AVComponentDescriptor& component = m_descriptor.comp[m_component];
  m_needsTable = m_paletteComponent >= 0 || component.depth < 8;
  if (!m_needsTable) return;
  const int largest = (1 << component.depth) - 1;
  const bool inverts = m_frame.format == AV_PIX_FMT_MONOWHITE;
  for (int i = 0; i <= largest; ++i) {
    if (m_paletteComponent < 0) {
      m_table[static_cast<size_t>(i)] =
          static_cast<uint8_t>(((inverts ? largest - i : i) * 255 + largest / 2) / largest);
    } else if (m_frame.data[1]) {
      uint32_t color = 0;
      std::memcpy(&color, m_frame.data[1] + i * sizeof color, sizeof color);
      m_table[static_cast<size_t>(i)] =
          static_cast<uint8_t>(color >> (16 - 8 * m_paletteComponent));
    }
  }
}

void ComponentReader::readRow(int y, int width, uint8_t* target) {
  const AVComponentDescriptor& component = m_descriptor.comp[m_component];
  const bool isBigEndian = m_descriptor.flags & AV_PIX_FMT_FLAG_BE;
  const uint8_t* source = m_frame.data[component.plane] +
                          static_cast<ptrdiff_t>(y) * m_frame.linesize[component.plane] +
                          component.offset;
  const bool isByte = isReadAsByte(component);
  if (m_descriptor.flags & AV_PIX_FMT_FLAG_BITSTREAM || (isByte && component.depth < 8))
    readBits(y, width, target);
  else if (isByte)
    gatherBytes(source + isBigEndian, component.step, width, target);
  else if (isBigEndian == (std::endian::native == std::endian::big))
    gatherWords<false>(source, component, width, target);
  else
    gatherWords<true>(source, component, width, target);
  if (!m_needsTable) return;
  std::transform(target, target + width, target, [this](uint8_t index) { return m_table[index]; });
}

void ComponentReader::readBits(int y, int width, uint8_t* target) {
  m_row.resize(static_cast<size_t>(width));
  std::array<const uint8_t*, 4> data{};
  std::array<int, 4> strides{};
  std::copy_n(m_frame.data, data.size(), data.begin());
  std::copy_n(m_frame.linesize, strides.size(), strides.begin());
  av_read_image_line2(m_row.data(), data.data(), strides.data(), &m_descriptor, 0, y, m_component,
                      width, 0, sizeof m_row.front());
  std::transform(m_row.begin(), m_row.end(), target,
                 [](uint16_t sample) { return static_cast<uint8_t>(sample); });
}

}  // namespace vantrel
