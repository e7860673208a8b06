#include "platform/image/png_filter.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace vantrel {
namespace {

// The loops below are written for a vectorising compiler: no branches, 16-bit arithmetic at most.

uint64_t sumOfMagnitudes(const uint8_t* bytes, size_t size) {
  // 256 values of at most 128 fit in 16 bits.
  constexpr size_t kBlock = 256;
  uint64_t total = 0;
  while (size > 0) {
    const size_t count = std::min(size, kBlock);
    uint16_t sum = 0;
    for (size_t i = 0; i < count; ++i) {
      const auto negated = static_cast<uint8_t>(-bytes[i]);
      sum = static_cast<uint16_t>(sum + std::min(bytes[i], negated));
    }
    total += sum;
    bytes += count;
    size -= count;
  }
  return total;
}

struct Row {
  const uint8_t* bytes;
  const uint8_t* above;
  size_t size;
  size_t step;
};

// Subtracts predict(left, above, above left) from each byte; what lies left of the row is 0.
template <typename Predict>
void subtract(const Row& row, uint8_t* __restrict output, Predict predict) {
  const uint8_t* bytes = row.bytes;
  const uint8_t* above = row.above;
  const size_t step = std::min(row.step, row.size);
  for (size_t i = 0; i < step; ++i) {
    output[i] = static_cast<uint8_t>(bytes[i] - predict(0, above[i], 0));
  }
  for (size_t i = step; i < row.size; ++i) {
    output[i] =
        static_cast<uint8_t>(bytes[i] - predict(bytes[i - step], above[i], above[i - step]));
  }
}

void copy(const Row& row, uint8_t* output) {
  std::memcpy(output, row.bytes, row.size);
}

void subtractLeft(const Row& row, uint8_t* output) {
  subtract(row, output, [](uint8_t left, uint8_t, uint8_t) { return left; });
}

void subtractAbove(const Row& row, uint8_t* output) {
  subtract(row, output, [](uint8_t, uint8_t above, uint8_t) { return above; });
}

void subtractAverage(const Row& row, uint8_t* output) {
  subtract(row, output, [](uint8_t left, uint8_t above, uint8_t) {
    return static_cast<uint8_t>(static_cast<uint16_t>(left + above) >> 1);
  });
}

void subtractPaeth(const Row& row, uint8_t* output) {
  subtract(row, output, [](int16_t left, int16_t above, int16_t corner) {
    const auto fromLeft = static_cast<int16_t>(above - corner);
    const auto fromAbove = static_cast<int16_t>(left - corner);
    const auto fromCorner = static_cast<int16_t>(fromLeft + fromAbove);
    const auto left16 = static_cast<int16_t>(fromLeft < 0 ? -fromLeft : fromLeft);
    const auto above16 = static_cast<int16_t>(fromAbove < 0 ? -fromAbove : fromAbove);
    const auto corner16 = static_cast<int16_t>(fromCorner < 0 ? -fromCorner : fromCorner);
    const int16_t farther = above16 <= corner16 ? above : corner;
    const int16_t least = std::min(above16, corner16);
    return static_cast<uint8_t>(left16 <= least ? left : farther);
  });
}

// In the order of their type numbers.
constexpr std::array kFilters{copy, subtractLeft, subtractAbove, subtractAverage, subtractPaeth};
constexpr uint8_t kTypeNone = 0;
constexpr uint8_t kTypeUp = 2;

}  // namespace

PngFilter::PngFilter(size_t rowBytes, size_t pixelBytes)
    : m_rowBytes(rowBytes),
      m_pixelBytes(pixelBytes),
      m_top(rowBytes),
      m_best(rowBytes),
      m_candidate(rowBytes) {}

void PngFilter::filterNone(const uint8_t* row, uint8_t* output) const {
  *output = kTypeNone;
  std::memcpy(output + 1, row, m_rowBytes);
}

void PngFilter::filterUp(const uint8_t* row, const uint8_t* above, uint8_t* output) const {
  *output = kTypeUp;
  subtractAbove({row, above != nullptr ? above : m_top.data(), m_rowBytes, m_pixelBytes},
                output + 1);
}

void PngFilter::filterToLeastSum(const uint8_t* row, const uint8_t* above, uint8_t* output) {
  const Row subject{row, above != nullptr ? above : m_top.data(), m_rowBytes, m_pixelBytes};
  uint64_t least = UINT64_MAX;
  for (size_t type = 0; type < kFilters.size(); ++type) {
    kFilters[type](subject, m_candidate.data());
    const uint64_t sum = sumOfMagnitudes(m_candidate.data(), m_rowBytes);
    if (sum >= least) continue;
    least = sum;
    *output = static_cast<uint8_t>(type);
    m_best.swap(m_candidate);
  }
  std::memcpy(output + 1, m_best.data(), m_rowBytes);
}

}  // namespace vantrel
