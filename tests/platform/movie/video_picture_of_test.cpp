#include "platform/movie/video_picture_of.h"

#include <gtest/gtest.h>

#include <string>

#include "base/failure.h"
#include "platform/movie/frame_maker.h"

namespace vantrel {
namespace {

using testing::makeFilledFrame;

using Model = VideoPicture::Model;

/// A sample that tells its component and place, in `depth` bits.
int patternAt(int c, int x, int y, int depth) {
  return (37 * c + 11 * x + 5 * y + 3) % (1 << depth);
}

int sampleAt(const PlaneView& plane, int x, int y) {
  if (plane.bytesPerSample == 1) return plane.row(y)[x];
  return reinterpret_cast<const uint16_t*>(plane.row(y))[x];
}

MovieTrack trackOf(int width, int height) {
  MovieTrack track;
  track.naturalSize = track.storedSize = {double(width), double(height)};
  track.formatDescriptions = {ColorTags()};
  return track;
}

struct Case {
  AVPixelFormat format = AV_PIX_FMT_NONE;
  Model model = Model::Yuv;
  int depth = 8, shiftX = 0, shiftY = 0;
  bool isFullRange = false, isShared = true;
};

void PrintTo(const Case& one, std::ostream* out) {
  *out << av_get_pix_fmt_name(one.format);
}

class PixelFormat : public ::testing::TestWithParam<Case> {};

TEST_P(PixelFormat, BecomesPlanesWithTheSameSamples) {
  const Case& expected = GetParam();
  const int width = 21, height = 13;
  AvFramePtr frame = makeFilledFrame(expected.format, width, height, [&](int c, int x, int y) {
    return patternAt(c, x, y, expected.depth);
  });
  const uint8_t* const data = frame->data[0];
  const auto picture = videoPictureOf(std::move(frame), trackOf(width, height));
  EXPECT_EQ(picture->model, expected.model);
  EXPECT_EQ(picture->depth, expected.depth);
  EXPECT_EQ(picture->chromaShiftX, expected.shiftX);
  EXPECT_EQ(picture->chromaShiftY, expected.shiftY);
  EXPECT_EQ(picture->isFullRange, expected.isFullRange);
  // Planar RGB begins with green.
  const size_t first = expected.model == Model::Rgb ? 1 : 0;
  EXPECT_EQ(picture->planes[first].data == data, expected.isShared);
  for (int c = 0; c < picture->planeCount(); ++c) {
    const PlaneView& plane = picture->planes[static_cast<size_t>(c)];
    const bool isChroma = picture->model == Model::Yuv && c > 0;
    ASSERT_EQ(plane.width, isChroma ? AV_CEIL_RSHIFT(width, expected.shiftX) : width);
    ASSERT_EQ(plane.height, isChroma ? AV_CEIL_RSHIFT(height, expected.shiftY) : height);
    for (int y = 0; y < plane.height; ++y) {
      for (int x = 0; x < plane.width; ++x)
        ASSERT_EQ(sampleAt(plane, x, y), patternAt(c, x, y, expected.depth)) << c << ' ' << x;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Common, PixelFormat,
    ::testing::Values(Case{AV_PIX_FMT_YUV420P, Model::Yuv, 8, 1, 1},
                      Case{AV_PIX_FMT_YUVJ420P, Model::Yuv, 8, 1, 1, true},
                      Case{AV_PIX_FMT_YUV422P10, Model::Yuv, 10, 1, 0},
                      Case{AV_PIX_FMT_YUV422P10BE, Model::Yuv, 10, 1, 0, false, false},
                      Case{AV_PIX_FMT_YUV444P12, Model::Yuv, 12},
                      Case{AV_PIX_FMT_YUVA444P, Model::Yuv},
                      Case{AV_PIX_FMT_YUV410P, Model::Yuv, 8, 2, 2},
                      Case{AV_PIX_FMT_UYVY422, Model::Yuv, 8, 1, 0, false, false},
                      Case{AV_PIX_FMT_P010, Model::Yuv, 10, 1, 1, false, false},
                      Case{AV_PIX_FMT_GRAY8, Model::Gray, 8, 0, 0, true},
                      Case{AV_PIX_FMT_GRAY16, Model::Gray, 16, 0, 0, true},
                      Case{AV_PIX_FMT_GBRP, Model::Rgb, 8, 0, 0, true},
                      Case{AV_PIX_FMT_BGRA, Model::Rgb, 8, 0, 0, true, false},
                      Case{AV_PIX_FMT_RGB48BE, Model::Rgb, 16, 0, 0, true, false}));

TEST(VideoPicture, OfTwoPlanesKeepsTheLuma) {
  AvFramePtr frame = makeFilledFrame(AV_PIX_FMT_NV12, 8, 6,
                                     [](int c, int x, int y) { return patternAt(c, x, y, 8); });
  const uint8_t* const luma = frame->data[0];
  const auto picture = videoPictureOf(std::move(frame), trackOf(8, 6));
  EXPECT_EQ(picture->planes[0].data, luma);
  EXPECT_EQ(sampleAt(picture->planes[2], 3, 2), patternAt(2, 3, 2, 8));
}

TEST(VideoPicture, OutlivesTheFrameAndIsReadUpwardsWhereTheFrameIs) {
  AvFramePtr frame = makeFilledFrame(AV_PIX_FMT_YUV420P, 4, 4,
                                     [](int c, int x, int y) { return patternAt(c, x, y, 8); });
  frame->data[0] += 3 * frame->linesize[0];
  frame->linesize[0] = -frame->linesize[0];
  const auto picture = videoPictureOf(std::move(frame), trackOf(4, 4));
  EXPECT_LT(picture->planes[0].stride, 0);
  EXPECT_EQ(sampleAt(picture->planes[0], 1, 0), patternAt(0, 1, 3, 8));
}

TEST(VideoPicture, TellsWhatTheFrameAndTheTrackSay) {
  AvFramePtr frame = makeFilledFrame(AV_PIX_FMT_YUV420P10, 8, 6, [](int, int, int) { return 0; });
  frame->chroma_location = AVCHROMA_LOC_TOPLEFT;
  frame->color_range = AVCOL_RANGE_JPEG;
  MovieTrack track = trackOf(16, 6);
  track.formatDescriptions = {{2, 16, 2}};
  track.preferredTransform = {0, 1, -1, 0, 6, 0};
  track.hdrMetadata.contentLight = ContentLight{600, 100};
  const auto picture = videoPictureOf(std::move(frame), track);
  EXPECT_EQ(picture->chromaSiting, ChromaSiting::TopLeft);
  EXPECT_TRUE(picture->isFullRange);
  EXPECT_EQ(picture->color, (ColorTags{9, 16, 9}));
  EXPECT_EQ(picture->hdrMetadata, track.hdrMetadata);
  EXPECT_EQ(picture->naturalSize, track.naturalSize);
  EXPECT_EQ(picture->preferredTransform, track.preferredTransform);
  EXPECT_EQ(picture->planes[0].width, 8);
}

TEST(VideoPicture, IsNotMadeOfFloatingPoint) {
  AvFramePtr frame = makeFrame();
  frame->format = AV_PIX_FMT_GBRPF32;
  frame->width = frame->height = 8;
  EXPECT_THROW(videoPictureOf(std::move(frame), trackOf(8, 8)), Failure);
}

TEST(ColorTags, AreCompletedWithThoseOfTheUsualVideos) {
  EXPECT_EQ(ColorTags().completed(), (ColorTags{1, 1, 1}));
  EXPECT_EQ((ColorTags{2, 18, 2}).completed(), (ColorTags{9, 18, 9}));
  EXPECT_EQ((ColorTags{5, 2, 0}).completed(), (ColorTags{5, 1, 1}));
}

}  // namespace
}  // namespace vantrel
