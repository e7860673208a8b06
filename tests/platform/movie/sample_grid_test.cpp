#include "platform/movie/sample_grid.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

constexpr SampleGrid kPixels;

TEST(SampleGrid, TheSitingTellsWhereChromaLies) {
  EXPECT_EQ(horizontalChromaGrid(ChromaSiting::Left, 1).offset, 0.5);
  EXPECT_EQ(verticalChromaGrid(ChromaSiting::Left, 1).offset, 1);
  EXPECT_EQ(horizontalChromaGrid(ChromaSiting::Top, 1).offset, 1);
  EXPECT_EQ(verticalChromaGrid(ChromaSiting::Top, 1).offset, 0.5);
  EXPECT_EQ(verticalChromaGrid(ChromaSiting::BottomLeft, 1).offset, 1.5);
  EXPECT_EQ(horizontalChromaGrid(ChromaSiting::Center, 2).offset, 2);
}

TEST(SampleGrid, TheSitingMeansNothingWithoutSubsampling) {
  for (const ChromaSiting siting :
       {ChromaSiting::Left, ChromaSiting::Center, ChromaSiting::Bottom}) {
    EXPECT_EQ(horizontalChromaGrid(siting, 0).offset, 0.5);
    EXPECT_EQ(verticalChromaGrid(siting, 0).offset, 0.5);
  }
}

TEST(SampleGrid, PixelsFallOnPixels) {
  const AxisMapping mapping = mapAxis({7, 20, false, 1}, kPixels, 40, kPixels);
  EXPECT_EQ(mapping.firstSample, 7);
  EXPECT_EQ(mapping.count, 20);
  EXPECT_EQ(mapping.start, 7);
  EXPECT_EQ(mapping.length, 20);
}

TEST(SampleGrid, ChromaFallsOnChromaAtEvenOffsetsOnly) {
  const SampleGrid chroma = horizontalChromaGrid(ChromaSiting::Left, 1);
  EXPECT_EQ(mapAxis({6, 20, false, 1}, chroma, 20, chroma).firstSample, 3);
  const AxisMapping odd = mapAxis({7, 20, false, 1}, chroma, 20, chroma);
  EXPECT_FALSE(odd.firstSample);
  EXPECT_EQ(odd.start, 3.5);
  EXPECT_EQ(odd.length, 10);
}

TEST(SampleGrid, FlippedChromaThatLiesLeftFallsOnChromaAtOddOffsetsOnly) {
  const SampleGrid chroma = horizontalChromaGrid(ChromaSiting::Left, 1);
  EXPECT_EQ(mapAxis({7, 20, true, 1}, chroma, 20, chroma).firstSample, 4);
  EXPECT_EQ(mapAxis({6, 20, true, 1}, chroma, 20, chroma).start, 3.5);
}

TEST(SampleGrid, NoSampleBeyondThePlaneIsFallenOn) {
  const SampleGrid bottom = verticalChromaGrid(ChromaSiting::BottomLeft, 1);
  EXPECT_EQ(mapAxis({1, 8, true, 1}, bottom, 5, bottom).firstSample, 0);
  EXPECT_EQ(mapAxis({3, 8, true, 1}, bottom, 5, bottom).firstSample, 1);
  EXPECT_FALSE(mapAxis({5, 8, true, 1}, bottom, 5, bottom).firstSample);
}

TEST(SampleGrid, StoredPixelsOfAnotherWidthAreScaled) {
  const AxisMapping mapping = mapAxis({40, 80, false, 0.75}, kPixels, 120, kPixels);
  EXPECT_FALSE(mapping.firstSample);
  EXPECT_EQ(mapping.count, 80);
  EXPECT_DOUBLE_EQ(mapping.start, 30);
  EXPECT_DOUBLE_EQ(mapping.length, 60);
}

}  // namespace
}  // namespace vantrel
