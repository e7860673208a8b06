#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

namespace vantrel::testing {

/// A still image of a HEIF file, coded without loss by libheif's HEVC encoder.
struct HeifSpec {
  int width = 20;
  int height = 12;
  /// 8, 10 or 12.
  int bits = 8;
  bool gray = false;
  bool alpha = false;
  bool premultiplied = false;
  /// As the tag Orientation has it; written as rotation and mirroring of the file format.
  int orientation = 1;
  std::vector<uint8_t> profile;
  /// Code points of ITU-T H.273.
  int primaries = 1;
  int transfer = 13;
  /// A reduced copy in the file.
  bool thumbnail = false;
  /// EXIF data, a TIFF structure.
  std::vector<uint8_t> exif;
  /// The sample, of `bits`, of a channel of a pixel.
  std::function<uint16_t(int x, int y, int channel)> sample;
};

/// False where libheif has no encoder; then no file can be made.
[[nodiscard]] bool canMakeHeif();

/// Writes the images to a file, replacing it; the first is the primary one. Throws
/// std::runtime_error.
void saveHeif(const std::filesystem::path& path, const std::vector<HeifSpec>& images);

}  // namespace vantrel::testing
