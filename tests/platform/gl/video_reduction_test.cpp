#include "platform/gl/video_reduction.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vantrel {

inline void PrintTo(const VideoReduction& reduction, std::ostream* out) {
  *out << reduction.stepsX << " and " << reduction.stepsY;
}

namespace {

constexpr VideoReduction::Limits kLimits{16384, int64_t{512} << 20};

/// Planes that are only sizes.
VideoPicture pictureOf(int width, int height, int chromaShift = 1, int bytesPerSample = 1) {
  VideoPicture picture;
  picture.chromaShiftX = picture.chromaShiftY = chromaShift;
  const int chromaWidth = width >> chromaShift, chromaHeight = height >> chromaShift;
  picture.planes = {PlaneView{nullptr, 0, width, height, bytesPerSample},
                    PlaneView{nullptr, 0, chromaWidth, chromaHeight, bytesPerSample},
                    PlaneView{nullptr, 0, chromaWidth, chromaHeight, bytesPerSample}};
  return picture;
}

TEST(VideoReduction, LeavesOneOrTwoSamplesForADevicePixel) {
  const VideoPicture picture = pictureOf(1920, 1080);
  const auto stepsAt = [&](double scale) { return VideoReduction::of(picture, scale, 1, kLimits); };
  EXPECT_EQ(stepsAt(10), (VideoReduction{0, 0}));
  EXPECT_EQ(stepsAt(0.51), (VideoReduction{0, 0}));
  EXPECT_EQ(stepsAt(0.5), (VideoReduction{1, 0}));
  EXPECT_EQ(stepsAt(0.26), (VideoReduction{1, 0}));
  EXPECT_EQ(stepsAt(0.1), (VideoReduction{3, 0}));
  EXPECT_EQ(VideoReduction::of(picture, 1, 0.25, kLimits), (VideoReduction{0, 2}));
}

TEST(VideoReduction, EndsAtTheMostSteps) {
  const VideoPicture picture = pictureOf(1920, 1080);
  EXPECT_EQ(VideoReduction::of(picture, 1e-300, 1e-9, kLimits), (VideoReduction{8, 8}));
  EXPECT_EQ(VideoReduction::of(picture, std::nan(""), 1, kLimits), (VideoReduction{0, 0}));
}

TEST(VideoReduction, MakesChromaAsCoarseAsLuma) {
  const VideoPicture picture = pictureOf(1920, 1080);
  const VideoReduction reduction{3, 1};
  EXPECT_EQ(reduction.ofPlane(picture, 0), reduction);
  EXPECT_EQ(reduction.ofPlane(picture, 1), (VideoReduction{2, 0}));
  EXPECT_EQ((VideoReduction{0, 0}).ofPlane(picture, 2), (VideoReduction{0, 0}));
}

TEST(VideoReduction, KeepsSidesAndBytesWithinTheirLimits) {
  EXPECT_EQ(VideoReduction::of(pictureOf(20000, 100), 1, 1, kLimits), (VideoReduction{1, 0}));
  EXPECT_EQ(VideoReduction::of(pictureOf(100, 70000), 1, 1, kLimits), (VideoReduction{0, 3}));
  EXPECT_EQ(VideoReduction::of(pictureOf(16000, 9000, 0, 2), 1, 1, kLimits),
            (VideoReduction{1, 1}));
  EXPECT_EQ(VideoReduction::of(pictureOf(7680, 4320, 0, 2), 1, 1, kLimits), (VideoReduction{0, 0}));
}

}  // namespace
}  // namespace vantrel
