#pragma once

#include <cstddef>
#include <cstdint>

namespace vantrel {

/// Samples of one plane to read: rows of `width` samples, `stride` bytes apart, which may be
/// negative. Owns nothing.
struct PlaneView {
  const uint8_t* data = nullptr;
  ptrdiff_t stride = 0;
  int width = 0, height = 0;
  /// 1 or 2, in the machine's byte order.
  int bytesPerSample = 1;

  [[nodiscard]] const uint8_t* row(int y) const { return data + y * stride; }
  /// The part of the given size that begins at (x, y).
  [[nodiscard]] PlaneView part(int x, int y, int partWidth, int partHeight) const {
    return {row(y) + static_cast<ptrdiff_t>(x) * bytesPerSample, stride, partWidth, partHeight,
            bytesPerSample};
  }
};

/// Room for the samples of one plane. Owns nothing.
struct PlaneTarget {
  uint8_t* data = nullptr;
  ptrdiff_t stride = 0;

  [[nodiscard]] uint8_t* row(int y) const { return data + y * stride; }
};

}  // namespace vantrel
