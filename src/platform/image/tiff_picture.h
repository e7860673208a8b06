#pragma once

// Private to this folder: what the tags of a TIFF directory say about its samples.

#include <array>
#include <cstdint>
#include <vector>

#include "platform/image/bitmap.h"
#include "platform/image/tiff_handle.h"
#include "platform/image/upright_bitmap.h"

namespace vantrel {

/// How the samples of a file become those of a bitmap.
enum class TiffColors : uint8_t {
  Direct,    ///< as they are, scaled to the bitmap's depth
  Inverted,  ///< grey where 0 is white
  Palette,   ///< positions in `colorMap`, looked up
  CieLab,    ///< a and b are signed
  IccLab,    ///< encoded as in ICC version 2
  ItuLab,    ///< the ranges of ITU-T T.42
  Library    ///< libtiff converts whole bands to RGB
};

/// The picture of the current directory of a file.
struct TiffPicture {
  uint32_t width = 0, height = 0;
  Orientation orientation = Orientation::TopLeft;
  /// Of a sample in the file.
  int bits = 0;
  bool isFloat = false;
  /// Samples of a pixel in the file, and whether each lies in a plane of its own.
  int samples = 0;
  bool separatePlanes = false;

  TiffColors colors = TiffColors::Direct;
  PixelLayout layout;
  /// The sample in the file that holds alpha, −1 for none, and whether colours are multiplied by
  /// it.
  int alphaSample = -1;
  bool premultiplied = false;
  /// Of TiffColors::Palette: red, green and blue of each position, 16 bits.
  std::vector<std::array<uint16_t, 3>> colorMap;
  BitmapColor color;

  /// The samples in the file that make a pixel: those of its colour, one for a palette, then alpha.
  [[nodiscard]] std::vector<int> wantedSamples() const;
  /// Bytes of a row of `pixels` pixels in one plane.
  [[nodiscard]] uint64_t rowBytes(uint64_t pixels) const;

  /// Reads the tags of the handle's current directory. Throws ImageDamaged for what cannot be
  /// decoded. Sets what libtiff needs to hand out such samples.
  [[nodiscard]] static TiffPicture read(const TiffHandle& file);
};

}  // namespace vantrel
