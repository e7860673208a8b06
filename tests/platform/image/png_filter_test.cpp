#include "platform/image/png_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "support/bitmap_maker.h"

namespace vantrel {
namespace {

using Row = std::vector<uint8_t>;

/// The predictors as ISO/IEC 15948, clause 9, words them.
int predict(int type, int left, int above, int corner) {
  if (type == 0) return 0;
  if (type == 1) return left;
  if (type == 2) return above;
  if (type == 3) return (left + above) / 2;
  const int estimate = left + above - corner;
  const int fromLeft = std::abs(estimate - left);
  const int fromAbove = std::abs(estimate - above);
  const int fromCorner = std::abs(estimate - corner);
  if (fromLeft <= fromAbove && fromLeft <= fromCorner) return left;
  return fromAbove <= fromCorner ? above : corner;
}

Row filteredBy(int type, const Row& row, const Row& above, size_t pixelBytes) {
  Row result;
  for (size_t i = 0; i < row.size(); ++i) {
    const int left = i >= pixelBytes ? row[i - pixelBytes] : 0;
    const int corner = i >= pixelBytes ? above[i - pixelBytes] : 0;
    result.push_back(static_cast<uint8_t>(row[i] - predict(type, left, above[i], corner)));
  }
  return result;
}

int sumOf(const Row& row) {
  int sum = 0;
  for (const uint8_t byte : row)
    sum += byte < 128 ? byte : 256 - byte;
  return sum;
}

Row typed(int type, Row filtered) {
  filtered.insert(filtered.begin(), static_cast<uint8_t>(type));
  return filtered;
}

Row leastOfAll(const Row& row, const Row& above, size_t pixelBytes) {
  Row least;
  int leastSum = INT32_MAX;
  for (int type = 0; type < 5; ++type) {
    const Row candidate = filteredBy(type, row, above, pixelBytes);
    const int sum = sumOf(candidate);
    if (sum >= leastSum) continue;
    leastSum = sum;
    least = typed(type, candidate);
  }
  return least;
}

/// Rows that each favour another filter, and one without any pattern.
Row rowOfKind(int kind, size_t size) {
  Row row(size);
  for (size_t i = 0; i < size; ++i) {
    const auto x = static_cast<int64_t>(i);
    const uint32_t noise = testing::scatter(x, kind, 0);
    if (kind % 3 == 0) row[i] = static_cast<uint8_t>(noise);
    if (kind % 3 == 1) row[i] = static_cast<uint8_t>(x * 5 + kind + static_cast<int>(noise % 3));
    if (kind % 3 == 2) row[i] = static_cast<uint8_t>(x * x / 40 + static_cast<int>(noise % 9));
  }
  return row;
}

TEST(PngFilter, FindsTheLeastSumOfAllFive) {
  for (const size_t pixelBytes : {1U, 2U, 3U, 4U, 6U, 8U}) {
    for (const size_t size : {1U, 2U, 7U, 8U, 31U, 64U, 255U, 256U, 257U, 1001U}) {
      PngFilter filter(size, pixelBytes);
      for (int kind = 0; kind < 9; ++kind) {
        const Row row = rowOfKind(kind, size);
        const Row above = rowOfKind(kind * 7 % 5, size);
        Row output(size + 1);
        filter.filterToLeastSum(row.data(), above.data(), output.data());
        EXPECT_EQ(output, leastOfAll(row, above, pixelBytes)) << size << " bytes, kind " << kind;
      }
    }
  }
}

TEST(PngFilter, TakesTheRowAboveTheTopAsZero) {
  const Row row = rowOfKind(1, 99);
  const Row zeros(row.size(), 0);
  PngFilter filter(row.size(), 3);
  Row output(row.size() + 1);
  filter.filterToLeastSum(row.data(), nullptr, output.data());
  EXPECT_EQ(output, leastOfAll(row, zeros, 3));
  filter.filterUp(row.data(), nullptr, output.data());
  EXPECT_EQ(output, typed(2, row));
}

TEST(PngFilter, SubtractsTheRowAboveThoughAnotherSumIsLess) {
  const Row row = rowOfKind(1, 99);
  const Row above = rowOfKind(0, 99);
  const PngFilter filter(row.size(), 3);
  Row output(row.size() + 1);
  filter.filterUp(row.data(), above.data(), output.data());
  EXPECT_EQ(output, typed(2, filteredBy(2, row, above, 3)));
  EXPECT_NE(output, leastOfAll(row, above, 3));
}

TEST(PngFilter, LeavesRowsAsTheyAreWithoutAFilter) {
  const Row row = rowOfKind(1, 99);
  const PngFilter filter(row.size(), 1);
  Row output(row.size() + 1, 9);
  filter.filterNone(row.data(), output.data());
  EXPECT_EQ(output, typed(0, row));
}

}  // namespace
}  // namespace vantrel
