#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <stdexcept>
#include <vector>

#include "platform/image/image_reader.h"
#include "support/image_makers.h"
#include "support/temporary_folder.h"
#include "support/tiff_maker.h"

namespace vantrel {

using testing::TiffSpec;

/// A value that differs from pixel to pixel and from sample to sample.
inline uint64_t pattern(uint32_t x, uint32_t y, int sample, int bits) {
  const uint64_t mixed = (x * 37 + y * 101 + static_cast<uint64_t>(sample) * 59 + 11) * 2654435761U;
  return bits >= 64 ? mixed : (mixed >> 7) & ((uint64_t{1} << bits) - 1);
}

inline TiffSpec patterned(int bits, int samples, int photometric) {
  TiffSpec spec;
  spec.bits = bits;
  spec.samples = samples;
  spec.photometric = photometric;
  spec.sample = [bits](uint32_t x, uint32_t y, int s) { return pattern(x, y, s, bits); };
  return spec;
}

class TiffReader : public ::testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path path() const { return m_folder / "picture.tiff"; }

  [[nodiscard]] std::unique_ptr<ImageReader> open() const { return ImageReader::open(path()); }

  [[nodiscard]] Bitmap decode() const {
    const std::unique_ptr<ImageReader> reader = open();
    if (!reader) throw std::runtime_error("not recognised");
    return reader->decode({});
  }

  [[nodiscard]] Bitmap decoded(const TiffSpec& spec, const char* mode = "wl") const {
    testing::saveTiff(path(), {spec}, mode);
    return decode();
  }

  testing::TemporaryFolder m_folder;
};

template <typename Sample>
Sample sampleAt(const Bitmap& bitmap, int64_t x, int64_t y, int channel) {
  Sample sample;
  std::memcpy(&sample, bitmap.pixel(x, y) + static_cast<size_t>(channel) * sizeof sample,
              sizeof sample);
  return sample;
}

template <typename Sample>
std::vector<Sample> pixelAt(const Bitmap& bitmap, int64_t x, int64_t y) {
  std::vector<Sample> pixel;
  for (int c = 0; c < bitmap.layout().channels(); ++c) {
    pixel.push_back(sampleAt<Sample>(bitmap, x, y, c));
  }
  return pixel;
}

/// Compares all samples with a function of the position in the file.
template <typename Sample, typename Expected>
void expectSamples(const Bitmap& bitmap, const TiffSpec& spec, Expected expected) {
  ASSERT_EQ(bitmap.width(), spec.width);
  ASSERT_EQ(bitmap.height(), spec.height);
  for (uint32_t y = 0; y < spec.height; ++y) {
    for (uint32_t x = 0; x < spec.width; ++x) {
      for (int c = 0; c < bitmap.layout().channels(); ++c) {
        ASSERT_EQ(sampleAt<Sample>(bitmap, x, y, c), static_cast<Sample>(expected(x, y, c)))
            << x << ' ' << y << ' ' << c;
      }
    }
  }
}

template <typename Sample>
void expectPattern(const Bitmap& bitmap, const TiffSpec& spec) {
  expectSamples<Sample>(bitmap, spec,
                        [&](uint32_t x, uint32_t y, int c) { return spec.sample(x, y, c); });
}

inline void fillColorMap(TiffSpec& spec, const std::function<uint16_t(uint32_t)>& value) {
  for (uint32_t c = 0; c < 3; ++c) {
    for (uint32_t i = 0; i < 1U << spec.bits; ++i) {
      spec.colorMap[c].push_back(value(i * 3 + c));
    }
  }
}

}  // namespace vantrel
