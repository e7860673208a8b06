#pragma once

#include <tiffio.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace vantrel::testing {

/// A directory of a TIFF file, written by libtiff.
struct TiffSpec {
  uint32_t width = 5;
  uint32_t height = 4;
  int bits = 8;
  int samples = 3;
  int photometric = PHOTOMETRIC_RGB;
  int sampleFormat = SAMPLEFORMAT_UINT;
  bool separatePlanes = false;
  int compression = COMPRESSION_NONE;
  /// 0: none.
  int predictor = 0;
  /// 0: one strip.
  uint32_t rowsPerStrip = 0;
  /// Multiple of 16; 0: strips.
  uint32_t tileSide = 0;
  std::vector<uint16_t> extraSamples;
  int orientation = 1;
  int fillOrder = FILLORDER_MSB2LSB;
  /// Samples of YCbCr JPEG are handed to libtiff as RGB.
  bool jpegFromRgb = false;
  int inkSet = 0;
  std::vector<uint16_t> colorMap[3];
  std::vector<uint8_t> profile;
  /// NewSubfileType; 0: not written.
  uint32_t subfileType = 0;
  /// The bits of a sample as they stand in memory.
  std::function<uint64_t(uint32_t x, uint32_t y, int sample)> sample;
};

/// Writes the pages to a file, replacing it. `mode` is libtiff's: "wl" little-endian, "wb"
/// big-endian, "w8l" and "w8b" BigTIFF. Throws std::runtime_error.
void saveTiff(const std::filesystem::path& path, const std::vector<TiffSpec>& pages,
              const char* mode = "wl");

}  // namespace vantrel::testing
