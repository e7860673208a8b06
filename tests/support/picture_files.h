#pragma once

#include <filesystem>

#include "support/image_makers.h"

namespace vantrel::testing {

/// A sample of the pictures below: each pixel differs from its neighbours.
inline uint8_t patternSample(int64_t x, int64_t y, int channel) {
  return static_cast<uint8_t>((x * 5 + y * 3 + channel * 40) % 256);
}

/// Writes an RGB PNG of patternSample.
inline void savePng(const std::filesystem::path& path, uint32_t width, uint32_t height) {
  PngSpec spec;
  spec.width = width;
  spec.height = height;
  spec.sample = [](uint32_t x, uint32_t y, int channel) -> uint16_t {
    return patternSample(x, y, channel);
  };
  saveBytes(path, makePng(spec));
}

/// Writes a grey JPEG.
inline void saveJpeg(const std::filesystem::path& path, int width, int height) {
  JpegSpec spec;
  spec.width = width;
  spec.height = height;
  spec.channels = 1;
  spec.sample = [](int x, int y, int) { return static_cast<uint8_t>((x + y) % 256); };
  saveBytes(path, makeJpeg(spec));
}

}  // namespace vantrel::testing
