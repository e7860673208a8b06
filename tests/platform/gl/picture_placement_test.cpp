#include "platform/gl/picture_placement.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vantrel {
namespace {

PictureView viewOf(const QRectF& frame) {
  return {QSize(100, 80), frame, frame, 1};
}

TEST(PicturePlacement, RoundsEdgesToTheNearestDevicePixelAndHalvesToTheRight) {
  EXPECT_EQ(deviceEdge(3.4), 3);
  EXPECT_EQ(deviceEdge(3.5), 4);
  EXPECT_EQ(deviceEdge(std::nextafter(3.5, 0.0)), 4);
  EXPECT_EQ(deviceEdge(-3.5), -3);
  EXPECT_EQ(deviceEdge(-3.6), -4);
}

TEST(PicturePlacement, SeesThePartOfTheFrameThatIsInTheTarget) {
  const auto placement = PicturePlacement::of(viewOf({-10, 20, 60, 300}), 30, 150);
  ASSERT_TRUE(placement);
  EXPECT_EQ(placement->visible(), (PixelRect{0, 20, 50, 60}));
  EXPECT_DOUBLE_EQ(placement->x.scale, 2);
  EXPECT_TRUE(placement->isMagnified());
}

TEST(PicturePlacement, SeesOnlyWhatTheCropKeepsWhereTheRestIsTransparent) {
  PictureView view = viewOf({0, 0, 90, 70});
  view.retained = QRectF(11, 12, 13, 14);
  view.excludedOpacity = 0;
  EXPECT_EQ(PicturePlacement::of(view, 90, 70)->visible(), (PixelRect{11, 12, 13, 14}));
  view.excludedOpacity = 0.01;
  EXPECT_EQ(PicturePlacement::of(view, 90, 70)->visible(), (PixelRect{0, 0, 90, 70}));
}

TEST(PicturePlacement, IsMagnifiedAtFullSizeHoweverItsScaleWasComputed) {
  EXPECT_TRUE(
      PicturePlacement::of(viewOf({0, 0, std::nextafter(70.0, 0.0), 70}), 70, 70)->isMagnified());
  EXPECT_FALSE(PicturePlacement::of(viewOf({0, 0, 69.9, 69.9}), 70, 70)->isMagnified());
}

TEST(PicturePlacement, PartsThatTouchShareNoDevicePixelAndLeaveNoneOut) {
  for (const double scale : {0.013, 0.4, 0.77, 1.0, 1.1, 2.5}) {
    const QRectF frame(3, 0, 2000 * scale, 10);
    const PlacedAxis axis = PicturePlacement::of(viewOf(frame), 2000, 10)->x;
    int64_t end = axis.device({0, 7}).begin;
    EXPECT_EQ(end, 3);
    for (int64_t source = 0; source < 2000; source += 7) {
      const Interval part = axis.device({source, std::min<int64_t>(2000, source + 7)});
      EXPECT_EQ(part.begin, end);
      end = part.end;
    }
    EXPECT_EQ(end, std::lround(3 + 2000 * scale));
  }
}

TEST(PicturePlacement, GivesAPictureADevicePixelAtLeast) {
  const auto placement = PicturePlacement::of(viewOf({5, 5, 0.2, 0.4}), 1, 2);
  ASSERT_TRUE(placement);
  EXPECT_EQ(placement->visible(), (PixelRect{5, 5, 1, 1}));
}

TEST(PicturePlacement, TellsTheSourcePixelOfEachDevicePixelWherePicturesAreHuge) {
  const double scale = 10.3;
  const double left = -std::round(999'999'000 * scale);
  const PlacedAxis axis =
      PicturePlacement::of(viewOf({left, 0, 1'000'000'000 * scale, 80}), 1'000'000'000, 8)->x;
  const std::vector<int64_t> pixels = axis.sourcePixels();
  ASSERT_EQ(pixels.size(), 100U);
  for (int64_t at = 0; at < 100; ++at) {
    const Interval device =
        axis.device({pixels[static_cast<size_t>(at)], pixels[static_cast<size_t>(at)] + 1});
    EXPECT_LE(device.begin, at);
    EXPECT_GT(device.end, at);
  }
}

}  // namespace
}  // namespace vantrel
