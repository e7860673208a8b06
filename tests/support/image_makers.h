#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace vantrel::testing {

using Bytes = std::vector<uint8_t>;

/// Writes `bytes` to a file, replacing it.
void saveBytes(const std::filesystem::path& path, const Bytes& bytes);
[[nodiscard]] Bytes loadBytes(const std::filesystem::path& path);
/// `bytes` with as many bits turned over, at places that `random` says.
[[nodiscard]] Bytes withFlippedBits(Bytes bytes, uint32_t flips, std::mt19937& random);

/// A TIFF structure with the one field Orientation, as EXIF has it.
[[nodiscard]] Bytes exifBlock(uint16_t orientation, bool bigEndian = false);

/// A chunk with its length and checksum.
[[nodiscard]] Bytes pngChunk(const std::string& name, const Bytes& data);
/// A chunk iCCP around a profile.
[[nodiscard]] Bytes iccpChunk(const Bytes& profile);
[[nodiscard]] Bytes deflated(const Bytes& data);

/// Made without libpng, so that the two check each other.
struct PngSpec {
  uint32_t width = 4;
  uint32_t height = 3;
  int depth = 8;
  /// 0 grey, 2 RGB, 3 palette, 4 grey with alpha, 6 RGB with alpha.
  int colorType = 2;
  bool interlaced = false;
  /// The sample, of `depth` bits, of a channel of a pixel.
  std::function<uint16_t(uint32_t x, uint32_t y, int channel)> sample;
  /// Whole chunks between IHDR and IDAT, PLTE for one, and between IDAT and IEND.
  std::vector<Bytes> before, after;

  [[nodiscard]] int channels() const;
};

/// The filtered rows of the picture, as they are compressed into IDAT.
[[nodiscard]] Bytes pngRows(const PngSpec& spec);
[[nodiscard]] Bytes makePng(const PngSpec& spec);
/// The same file around other compressed data.
[[nodiscard]] Bytes makePngAround(const PngSpec& spec, const Bytes& compressed);

struct JpegSpec {
  int width = 16;
  int height = 16;
  /// 1 grey, 3 RGB, 4 CMYK as the file stores it.
  int channels = 3;
  int quality = 100;
  /// Whether colours are turned into luminance and chroma (YCbCr, YCCK).
  bool transformed = true;
  bool adobeMarker = false;
  bool progressive = false;
  /// From 0 up: a progressive grey picture with a scan for every coefficient and one more for each
  /// of so many refinements, 10 at most.
  int refinements = -1;
  bool arithmetic = false;
  /// Columns and rows of pixels that share a chroma sample.
  int chroma = 1;
  int restartRows = 0;
  std::function<uint8_t(int x, int y, int channel)> sample;
  /// Application segments: the number n of APPn, and the content.
  std::vector<std::pair<int, Bytes>> segments;
};

[[nodiscard]] Bytes makeJpeg(const JpegSpec& spec);
/// The content of an APP1 with this orientation.
[[nodiscard]] Bytes exifSegment(uint16_t orientation);
/// The content of an APP2 with part `number` of `count` of a profile.
[[nodiscard]] Bytes iccSegment(const Bytes& part, uint8_t number, uint8_t count);

}  // namespace vantrel::testing
