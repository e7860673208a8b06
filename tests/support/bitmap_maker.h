#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>

#include "platform/image/bitmap.h"

namespace vantrel::testing {

/// A bitmap whose samples are those of `sample`, for whole numbers in the range of the format, for
/// Float32 as they are. Rows have gaps between them, so that code that forgets the stride is found
/// out.
inline Bitmap makeBitmap(int64_t width, int64_t height, PixelLayout layout,
                         const std::function<double(int64_t x, int64_t y, int channel)>& sample,
                         BitmapColor color = {}) {
  constexpr size_t kGap = 12;
  const auto sampleBytes = static_cast<size_t>(layout.bytesPerSample());
  const size_t stride =
      (static_cast<size_t>(width * layout.bytesPerPixel()) + kGap) / sampleBytes * sampleBytes;
  const std::shared_ptr<std::byte> pixels(new std::byte[stride * static_cast<size_t>(height)],
                                          std::default_delete<std::byte[]>());
  for (int64_t y = 0; y < height; ++y) {
    std::byte* to = pixels.get() + static_cast<size_t>(y) * stride;
    for (int64_t x = 0; x < width; ++x) {
      for (int channel = 0; channel < layout.channels(); ++channel, to += sampleBytes) {
        const double value = sample(x, y, channel);
        const auto byte = static_cast<uint8_t>(layout.sample == SampleFormat::UInt8 ? value : 0);
        const auto word = static_cast<uint16_t>(layout.sample == SampleFormat::UInt16 ? value : 0);
        const auto number = static_cast<float>(value);
        if (layout.sample == SampleFormat::UInt8) std::memcpy(to, &byte, sizeof byte);
        if (layout.sample == SampleFormat::UInt16) std::memcpy(to, &word, sizeof word);
        if (layout.sample == SampleFormat::Float32) std::memcpy(to, &number, sizeof number);
      }
    }
  }
  return Bitmap(width, height, layout, pixels, stride, std::move(color));
}

/// Numbers from 0 to 65535 without a pattern, the same each time.
inline uint32_t scatter(int64_t x, int64_t y, int channel) {
  uint32_t value = static_cast<uint32_t>(x) * 0x9E3779B1U ^ static_cast<uint32_t>(y) * 0x85EBCA77U ^
                   static_cast<uint32_t>(channel) * 0xC2B2AE3DU;
  value = (value ^ value >> 15) * 0x2C1B3C6DU;
  value = (value ^ value >> 12) * 0x297A2D39U;
  return (value ^ value >> 15) & 0xFFFF;
}

}  // namespace vantrel::testing
