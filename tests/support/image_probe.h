#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vantrel::testing {

/// What a PNG file holds, read by libpng without any conversion.
struct PngContents {
  uint32_t width = 0, height = 0;
  int bitDepth = 0;
  int colorType = 0;
  /// Rows as PNG stores them: packed, high byte first, without gaps.
  std::vector<uint8_t> pixels;
  /// Three bytes an entry.
  std::vector<uint8_t> palette;
  std::vector<uint8_t> paletteAlpha;
  std::vector<uint8_t> iccProfile;
  /// The types of all chunks in order; repeated ones stand once.
  std::vector<std::string> chunks;
  /// Whether the joined IDAT chunks are one complete zlib stream with a right checksum.
  bool streamIsWhole = false;
  /// The type of each row's filter.
  std::vector<uint8_t> filterTypes;

  [[nodiscard]] size_t rowBytes() const { return height == 0 ? 0 : pixels.size() / height; }
};

/// Throws std::runtime_error on every error and warning of libpng.
[[nodiscard]] PngContents readPngFile(const std::filesystem::path& path);

/// What a JPEG file holds, read by libjpeg with the colours only turned from YCbCr to RGB.
struct JpegContents {
  int width = 0, height = 0;
  /// 1 grey, 3 RGB, 4 CMYK as the file stores it.
  int channels = 0;
  std::vector<uint8_t> pixels;
  std::vector<uint8_t> iccProfile;
  /// The second bytes of the markers up to the scan, in order.
  std::vector<int> markers;
  bool hasAdobeMarker = false;
  bool isProgressive = false;
  /// Pixels that share a chroma sample, across and down.
  int chromaWidth = 1, chromaHeight = 1;
  int densityUnit = -1, densityX = 0, densityY = 0;

  [[nodiscard]] uint8_t at(int x, int y, int channel) const {
    const auto pixel = static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
    return pixels[pixel * static_cast<size_t>(channels) + static_cast<size_t>(channel)];
  }
};

/// Throws std::runtime_error on every error and warning of libjpeg.
[[nodiscard]] JpegContents readJpegFile(const std::filesystem::path& path);

}  // namespace vantrel::testing
