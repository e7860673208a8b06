#include "platform/gl/plane_reduction.h"

#include <algorithm>
#include <cstring>

namespace vantrel {
namespace {

template <class Sample>
void setSums(const uint8_t* row, int width, uint32_t* sums) {
  const auto* samples = reinterpret_cast<const Sample*>(row);
  for (int x = 0; x < width; ++x)
    sums[x] = samples[x];
}

template <class Sample>
void addToSums(const uint8_t* row, int width, uint32_t* sums) {
  const auto* samples = reinterpret_cast<const Sample*>(row);
  for (int x = 0; x < width; ++x)
    sums[x] += samples[x];
}

/// Halves the number of sums, adding neighbours; the last one may be alone.
void addPairs(int width, uint32_t* sums) {
  for (int x = 0; x < width / 2; ++x)
    sums[x] = sums[2 * x] + sums[2 * x + 1];
  if (width % 2 == 1) sums[width / 2] = sums[width - 1];
}

/// Means of `count` samples each, a power of two.
template <class Sample>
void writeMeans(const uint32_t* sums, int width, int bits, uint8_t* row) {
  auto* samples = reinterpret_cast<Sample*>(row);
  const uint32_t half = bits > 0 ? 1U << (bits - 1) : 0;
  for (int x = 0; x < width; ++x)
    samples[x] = static_cast<Sample>((sums[x] + half) >> bits);
}

template <class Sample>
void writeMean(uint32_t sum, uint32_t count, uint8_t* row, int x) {
  reinterpret_cast<Sample*>(row)[x] = static_cast<Sample>((sum + count / 2) / count);
}

/// Reduces up to 2^stepsY rows from `y` on to one.
template <class Sample>
void reduceRows(const PlaneView& plane, int y, int stepsX, int stepsY, uint32_t* sums,
                uint8_t* target) {
  const int rows = std::min(1 << stepsY, plane.height - y);
  setSums<Sample>(plane.row(y), plane.width, sums);
  for (int i = 1; i < rows; ++i)
    addToSums<Sample>(plane.row(y + i), plane.width, sums);
  for (int step = 0; step < stepsX; ++step)
    addPairs(PlaneReduction::reducedSize(plane.width, step), sums);

  const int width = PlaneReduction::reducedSize(plane.width, stepsX);
  const int columnsOfLast = plane.width - ((width - 1) << stepsX);
  const bool isWhole = rows == 1 << stepsY;
  if (isWhole) writeMeans<Sample>(sums, width, stepsX + stepsY, target);
  for (int x = isWhole ? width - 1 : 0; x < width; ++x) {
    const int columns = x == width - 1 ? columnsOfLast : 1 << stepsX;
    writeMean<Sample>(sums[x], static_cast<uint32_t>(columns * rows), target, x);
  }
}

}  // namespace

PlaneView PlaneReduction::reduced(const PlaneView& plane, int stepsX, int stepsY) {
  const int width = reducedSize(plane.width, stepsX), height = reducedSize(plane.height, stepsY);
  const size_t rowBytes = static_cast<size_t>(width) * static_cast<size_t>(plane.bytesPerSample);
  m_samples.resize(rowBytes * static_cast<size_t>(height));
  m_sums.resize(static_cast<size_t>(plane.width));
  for (int y = 0; y < height; ++y) {
    uint8_t* target = m_samples.data() + rowBytes * static_cast<size_t>(y);
    if (stepsX == 0 && stepsY == 0) {
      std::memcpy(target, plane.row(y), rowBytes);
    } else if (plane.bytesPerSample == 1) {
      reduceRows<uint8_t>(plane, y << stepsY, stepsX, stepsY, m_sums.data(), target);
    } else {
      reduceRows<uint16_t>(plane, y << stepsY, stepsX, stepsY, m_sums.data(), target);
    }
  }
  return {m_samples.data(), static_cast<ptrdiff_t>(rowBytes), width, height, plane.bytesPerSample};
}

}  // namespace vantrel
