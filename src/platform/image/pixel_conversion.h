#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/image/bitmap.h"

namespace vantrel {

/// Turns pixels of a bitmap into those that a file format can hold, a run of pixels at a time, so
/// that no second bitmap is needed. Immutable; any number of threads may convert at once.
class PixelConversion {
 public:
  /// For PNG: Gray, Rgb and Indexed of 8 and 16 bits stay as they are, float becomes 16 bits in its
  /// own space, Cmyk and Lab become sRGB of the same depth. Alpha stays.
  [[nodiscard]] static PixelConversion forPng(const Bitmap& bitmap);

  /// For JPEG: 8 bits and no alpha; Gray, Rgb and Cmyk stay in their space, Indexed becomes Rgb,
  /// Lab becomes sRGB. A bitmap with alpha is laid over `background`, an sRGB colour with channels
  /// from 0 to 1, in its own space if that is Rgb and in sRGB otherwise.
  [[nodiscard]] static PixelConversion forJpeg(const Bitmap& bitmap,
                                               const std::array<double, 3>& background);

  /// The layout that comes out, samples in the machine's byte order.
  [[nodiscard]] const PixelLayout& layout() const { return m_layout; }
  /// The ICC profile of what comes out; empty when there is none.
  [[nodiscard]] const std::vector<uint8_t>& iccProfile() const { return m_iccProfile; }
  /// True when pixels come out as they went in.
  [[nodiscard]] bool isIdentity() const { return m_steps.empty(); }

  /// Converts a run of pixels; the ranges must not overlap.
  void convert(const std::byte* from, std::byte* to, int64_t pixels) const;

 private:
  using Run = std::function<void(const std::byte* from, std::byte* to, size_t pixels)>;
  struct Step {
    Run run;
    int bytesPerPixel;
  };

  explicit PixelConversion(const Bitmap& bitmap);
  void append(PixelLayout result, Run run);
  void toIntegers(SampleFormat sample);
  void toBytes();
  void paletteToRgb(const std::vector<PaletteEntry>& palette, bool alpha);
  void toSrgb(const BitmapColor& color);
  void overBackground(const std::array<uint8_t, 3>& background);

  PixelLayout m_source;
  PixelLayout m_layout;
  std::vector<uint8_t> m_iccProfile;
  std::vector<Step> m_steps;
};

}  // namespace vantrel
