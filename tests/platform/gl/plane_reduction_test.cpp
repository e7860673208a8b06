#include "platform/gl/plane_reduction.h"

#include <gmock/gmock.h>

#include <numeric>

namespace vantrel {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

template <class Sample>
PlaneView viewOf(const std::vector<Sample>& samples, int width, int height, int stride) {
  return {reinterpret_cast<const uint8_t*>(samples.data()),
          ptrdiff_t{stride} * ptrdiff_t{sizeof(Sample)}, width, height, sizeof(Sample)};
}

template <class Sample>
std::vector<int> samplesOf(const PlaneView& plane) {
  std::vector<int> result;
  for (int y = 0; y < plane.height; ++y) {
    const auto* row = reinterpret_cast<const Sample*>(plane.row(y));
    result.insert(result.end(), row, row + plane.width);
  }
  return result;
}

TEST(PlaneReduction, GivesMeansOfBlocksRounded) {
  const std::vector<uint8_t> samples{0, 1, 10, 20, 2, 4, 30, 41};
  PlaneReduction reduction;
  EXPECT_THAT(samplesOf<uint8_t>(reduction.reduced(viewOf(samples, 4, 2, 4), 1, 1)),
              ElementsAre(2, 25));
}

TEST(PlaneReduction, GivesMeansOfWhatThereIsAtTheEdges) {
  const std::vector<uint8_t> samples{10, 20, 100, 30, 40, 200, 7, 9, 50};
  PlaneReduction reduction;
  const PlaneView reduced = reduction.reduced(viewOf(samples, 3, 3, 3), 1, 1);
  EXPECT_EQ(reduced.width, 2);
  EXPECT_EQ(reduced.height, 2);
  EXPECT_THAT(samplesOf<uint8_t>(reduced), ElementsAre(25, 150, 8, 50));
}

TEST(PlaneReduction, ReducesEachAxisByStepsOfItsOwn) {
  const std::vector<uint16_t> samples{1000, 3000, 5000, 7000, 10, 20, 30, 40};
  const PlaneView plane = viewOf(samples, 4, 2, 4);
  PlaneReduction reduction;
  EXPECT_THAT(samplesOf<uint16_t>(reduction.reduced(plane, 2, 0)), ElementsAre(4000, 25));
  EXPECT_THAT(samplesOf<uint16_t>(reduction.reduced(plane, 0, 1)),
              ElementsAre(505, 1510, 2515, 3520));
}

TEST(PlaneReduction, LaysRowsCloseTogether) {
  const std::vector<uint8_t> samples{1, 2, 99, 3, 4, 99};
  PlaneView plane = viewOf(samples, 2, 2, 3);
  PlaneReduction reduction;
  EXPECT_EQ(reduction.reduced(plane, 0, 0).stride, 2);
  plane.data += plane.stride;
  plane.stride = -plane.stride;
  EXPECT_THAT(samplesOf<uint8_t>(reduction.reduced(plane, 0, 0)), ElementsAre(3, 4, 1, 2));
}

TEST(PlaneReduction, HoldsTheSumsOfTheBrightestBlocks) {
  const int size = 1 << PlaneReduction::kMostSteps;
  const std::vector<uint16_t> samples(static_cast<size_t>(2 * size * size), 65535);
  PlaneReduction reduction;
  EXPECT_THAT(samplesOf<uint16_t>(reduction.reduced(viewOf(samples, 2 * size, size, 2 * size),
                                                    PlaneReduction::kMostSteps,
                                                    PlaneReduction::kMostSteps)),
              ElementsAre(65535, 65535));
}

TEST(PlaneReduction, KeepsAFlatPlaneFlatAtAnySteps) {
  const std::vector<uint16_t> samples(static_cast<size_t>(37 * 23), 940);
  PlaneReduction reduction;
  for (int steps = 0; steps <= PlaneReduction::kMostSteps; ++steps) {
    EXPECT_THAT(samplesOf<uint16_t>(reduction.reduced(viewOf(samples, 37, 23, 37), steps, steps)),
                Each(940));
  }
}

}  // namespace
}  // namespace vantrel
