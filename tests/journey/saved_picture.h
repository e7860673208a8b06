#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "support/image_probe.h"
#include "support/picture_files.h"

namespace vantrel::testing {

/// The saved PNG holds the pattern of savePng from (left, top) on, and nothing else.
inline void expectPattern(const std::filesystem::path& path, uint32_t width, uint32_t height,
                          int64_t left, int64_t top) {
  const PngContents png = readPngFile(path);
  ASSERT_EQ(png.width, width);
  ASSERT_EQ(png.height, height);
  ASSERT_EQ(png.pixels.size(), size_t{3} * width * height);
  const uint8_t* sample = png.pixels.data();
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < width; ++x) {
      for (int channel = 0; channel < 3; ++channel) {
        ASSERT_EQ(*sample++, patternSample(x + left, y + top, channel))
            << x << ' ' << y << ' ' << channel;
      }
    }
  }
}

}  // namespace vantrel::testing
