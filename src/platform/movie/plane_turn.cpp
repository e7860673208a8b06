#include "platform/movie/plane_turn.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

namespace vantrel {
namespace {

/// Bytes of a vector register that every processor of today has.
constexpr size_t kLaneBytes = 16;

template <class Sample>
struct Lanes {
  Sample samples [[gnu::vector_size(kLaneBytes)]];
};

/// a0 b0 a1 b1 … of the lower (or upper) halves of two vectors.
template <class Sample, size_t... index>
void interleave(const Lanes<Sample>& a, const Lanes<Sample>& b, Lanes<Sample>& low,
                Lanes<Sample>& high, std::index_sequence<index...>) {
  constexpr int kCount = sizeof...(index);
  low.samples = __builtin_shufflevector(a.samples, b.samples,
                                        (static_cast<int>(index / 2 + index % 2 * kCount))...);
  high.samples = __builtin_shufflevector(
      a.samples, b.samples, (static_cast<int>(kCount / 2 + index / 2 + index % 2 * kCount))...);
}

/// Transposes a square of as many rows as a vector has lanes. Interleaving each row of the upper
/// half with its fellow of the lower half, once for each bit of the row number, exchanges the bits
/// of row and column.
template <class Sample>
void transposeSquare(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* target,
                     ptrdiff_t targetStride) {
  constexpr size_t kCount = kLaneBytes / sizeof(Sample);
  std::array<Lanes<Sample>, kCount> rows, next;
  for (size_t i = 0; i < kCount; ++i)
    std::memcpy(&rows[i], source + static_cast<ptrdiff_t>(i) * sourceStride, kLaneBytes);
  for (int round = 0; round < std::countr_zero(kCount); ++round) {
    for (size_t i = 0; i < kCount / 2; ++i)
      interleave<Sample>(rows[i], rows[i + kCount / 2], next[2 * i], next[2 * i + 1],
                         std::make_index_sequence<kCount>());
    std::swap(rows, next);
  }
  for (size_t i = 0; i < kCount; ++i)
    std::memcpy(target + static_cast<ptrdiff_t>(i) * targetStride, &rows[i], kLaneBytes);
}

template <class Sample>
void transposeSamples(const PlaneView& source, PlaneTarget target) {
  for (int y = 0; y < source.height; ++y) {
    for (int x = 0; x < source.width; ++x)
      std::memcpy(target.row(x) + static_cast<size_t>(y) * sizeof(Sample),
                  source.row(y) + static_cast<size_t>(x) * sizeof(Sample), sizeof(Sample));
  }
}

template <class Sample>
void transpose(const PlaneView& source, PlaneTarget target) {
  constexpr int kCount = kLaneBytes / sizeof(Sample);
  const auto shifted = [&](int x, int y) {
    return PlaneTarget{target.row(x) + static_cast<size_t>(y) * sizeof(Sample), target.stride};
  };
  const int squaresEndX = source.width / kCount * kCount;
  const int squaresEndY = source.height / kCount * kCount;
  for (int y = 0; y < squaresEndY; y += kCount) {
    for (int x = 0; x < squaresEndX; x += kCount)
      transposeSquare<Sample>(source.part(x, y, kCount, kCount).data, source.stride,
                              shifted(x, y).data, target.stride);
  }
  transposeSamples<Sample>(source.part(squaresEndX, 0, source.width - squaresEndX, source.height),
                           shifted(squaresEndX, 0));
  transposeSamples<Sample>(source.part(0, squaresEndY, squaresEndX, source.height - squaresEndY),
                           shifted(0, squaresEndY));
}

uint64_t reversedSamples(uint64_t word, uint8_t) {
  return __builtin_bswap64(word);
}
uint64_t reversedSamples(uint64_t word, uint16_t) {
  word = (word & 0x0000ffff0000ffff) << 16 | (word >> 16 & 0x0000ffff0000ffff);
  return word << 32 | word >> 32;
}

template <class Sample>
void reverseRow(const uint8_t* source, uint8_t* target, int width) {
  constexpr int kCount = sizeof(uint64_t) / sizeof(Sample);
  int x = 0;
  for (; x + kCount <= width; x += kCount) {
    uint64_t word = 0;
    std::memcpy(&word, source + static_cast<size_t>(width - kCount - x) * sizeof(Sample),
                sizeof word);
    word = reversedSamples(word, Sample());
    std::memcpy(target + static_cast<size_t>(x) * sizeof(Sample), &word, sizeof word);
  }
  for (; x < width; ++x)
    std::memcpy(target + static_cast<size_t>(x) * sizeof(Sample),
                source + static_cast<size_t>(width - 1 - x) * sizeof(Sample), sizeof(Sample));
}

template <class Sample>
void copyRows(const PlaneView& source, bool reverses, PlaneTarget target) {
  for (int y = 0; y < source.height; ++y) {
    if (reverses)
      reverseRow<Sample>(source.row(y), target.row(y), source.width);
    else
      std::memcpy(target.row(y), source.row(y), static_cast<size_t>(source.width) * sizeof(Sample));
  }
}

template <class Sample>
void turn(const PlaneView& source, const PictureOrientation& orientation, PlaneTarget target) {
  PlaneView view = source;
  if (orientation.flipsY) {
    view.data = source.row(source.height - 1);
    view.stride = -source.stride;
  }
  if (!orientation.transposes) return copyRows<Sample>(view, orientation.flipsX, target);
  if (orientation.flipsX) target = {target.row(source.width - 1), -target.stride};
  transpose<Sample>(view, target);
}

}  // namespace

void turnPlane(const PlaneView& source, const PictureOrientation& orientation, PlaneTarget target) {
  if (source.width <= 0 || source.height <= 0) return;
  if (source.bytesPerSample == 1)
    turn<uint8_t>(source, orientation, target);
  else
    turn<uint16_t>(source, orientation, target);
}

}  // namespace vantrel
