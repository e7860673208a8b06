#include "platform/image/heif_pixels.h"

#include <algorithm>
#include <limits>

#include "platform/image/image_reader.h"

namespace vantrel {
namespace {

HeifPlane planeOf(heif_image* image, int channels) {
  constexpr heif_channel channel = heif_channel_interleaved;
  int stride = 0;
  uint8_t* bytes = heif_image_get_plane(image, channel, &stride);
  const HeifPlane plane{bytes, static_cast<size_t>(stride), heif_image_get_width(image, channel),
                        heif_image_get_height(image, channel),
                        heif_image_get_bits_per_pixel_range(image, channel)};
  const int sampleBytes = plane.bits > 8 ? 2 : 1;
  if (!bytes || plane.bits < 1 || plane.bits > 16 || plane.width < 1 || plane.height < 1 ||
      plane.width * channels * sampleBytes > stride) {
    throw ImageDamaged();
  }
  return plane;
}

void spreadOverSixteenBits(const HeifPlane& plane, int channels) {
  if (plane.bits == 16) return;
  const uint32_t most = (1U << plane.bits) - 1;
  for (int64_t y = 0; y < plane.height; ++y) {
    auto* row = reinterpret_cast<uint16_t*>(plane.bytes + static_cast<size_t>(y) * plane.stride);
    std::transform(row, row + plane.width * channels, row, [most](uint16_t sample) {
      return static_cast<uint16_t>((std::min<uint32_t>(sample, most) * 65535 + most / 2) / most);
    });
  }
}

template <typename Sample>
void divideByAlpha(const HeifPlane& plane, int colors) {
  constexpr uint32_t kFull = std::numeric_limits<Sample>::max();
  for (int64_t y = 0; y < plane.height; ++y) {
    auto* pixel = reinterpret_cast<Sample*>(plane.bytes + static_cast<size_t>(y) * plane.stride);
    for (int64_t x = 0; x < plane.width; ++x, pixel += colors + 1) {
      const uint32_t alpha = pixel[colors];
      for (int c = 0; c < colors; ++c) {
        const uint32_t color = std::min<uint32_t>(pixel[c], alpha);
        pixel[c] =
            alpha == 0 ? Sample{0} : static_cast<Sample>((color * kFull + alpha / 2) / alpha);
      }
    }
  }
}

/// Keeps one of three equal colour channels, and alpha.
template <typename Sample>
HeifPixels grayPixels(const HeifPlane& from, bool alpha) {
  const int64_t channels = alpha ? 2 : 1;
  const auto rowSamples = static_cast<size_t>(from.width * channels);
  const std::shared_ptr<Sample> samples(new Sample[rowSamples * static_cast<size_t>(from.height)],
                                        std::default_delete<Sample[]>());
  Sample* to = samples.get();
  for (int64_t y = 0; y < from.height; ++y) {
    const auto* pixel =
        reinterpret_cast<const Sample*>(from.bytes + static_cast<size_t>(y) * from.stride);
    for (int64_t x = 0; x < from.width; ++x, pixel += 2 + channels) {
      *to++ = pixel[0];
      if (alpha) *to++ = pixel[3];
    }
  }
  HeifPlane plane = from;
  plane.bytes = reinterpret_cast<uint8_t*>(samples.get());
  plane.stride = rowSamples * sizeof(Sample);
  return {plane, {samples, reinterpret_cast<const std::byte*>(samples.get())}};
}

}  // namespace

HeifPixels heifPixels(const std::shared_ptr<heif_image>& image, const PixelLayout& layout) {
  const int decodedChannels = layout.alpha ? 4 : 3;
  const HeifPlane plane = planeOf(image.get(), decodedChannels);
  if ((plane.bits > 8) != (layout.sample == SampleFormat::UInt16)) throw ImageDamaged();
  if (plane.bits > 8) spreadOverSixteenBits(plane, decodedChannels);
  if (layout.model == ColorModel::Gray) {
    return plane.bits > 8 ? grayPixels<uint16_t>(plane, layout.alpha)
                          : grayPixels<uint8_t>(plane, layout.alpha);
  }
  // The bitmap is the decoder's own memory: no copy is made.
  return {plane, {image, reinterpret_cast<const std::byte*>(plane.bytes)}};
}

void divideByAlpha(const HeifPlane& plane, const PixelLayout& layout) {
  if (layout.sample == SampleFormat::UInt8) {
    divideByAlpha<uint8_t>(plane, layout.colorChannels());
  } else {
    divideByAlpha<uint16_t>(plane, layout.colorChannels());
  }
}

}  // namespace vantrel
