#include "platform/movie/picture_layout.h"

#include "written_movie.h"

namespace vantrel {
namespace {

using testing::makePicture;

uint8_t byteAt(const AVFrame& frame, int plane, int x, int y) {
  return frame.data[plane][y * frame.linesize[plane] + x];
}
uint16_t wordAt(const AVFrame& frame, int plane, int x, int y) {
  return reinterpret_cast<const uint16_t*>(frame.data[plane] + y * frame.linesize[plane])[x];
}

TEST(PictureLayout, PadsByRepeatingTheEdge) {
  const AvFramePtr picture = makePicture(4, 2, 80);
  const AvFramePtr padded = paddedPicture(*picture, 8, 6);
  EXPECT_EQ(padded->width, 8);
  EXPECT_EQ(padded->height, 6);
  EXPECT_EQ(padded->pts, 80);
  for (int y = 0; y < 6; ++y) {
    for (int x = 0; x < 8; ++x) {
      EXPECT_EQ(byteAt(*padded, 0, x, y), byteAt(*picture, 0, std::min(x, 3), std::min(y, 1)));
      EXPECT_EQ(byteAt(*padded, 1, x / 2, y / 2), byteAt(*picture, 1, std::min(x / 2, 1), 0));
      EXPECT_EQ(byteAt(*padded, 2, x / 2, y / 2), byteAt(*picture, 2, std::min(x / 2, 1), 0));
    }
  }
}

TEST(PictureLayout, PadsTenBits) {
  const AvFramePtr picture = makePicture(2, 2, 0, true);
  const AvFramePtr padded = paddedPicture(*picture, 4, 4);
  EXPECT_EQ(wordAt(*padded, 0, 0, 0), wordAt(*picture, 0, 0, 0));
  EXPECT_EQ(wordAt(*padded, 0, 3, 3), wordAt(*picture, 0, 1, 1));
  EXPECT_EQ(wordAt(*padded, 2, 1, 1), wordAt(*picture, 2, 0, 0));
}

TEST(PictureLayout, InterleavesChroma) {
  const AvFramePtr picture = makePicture(6, 4, 16);
  const AvFramePtr interleaved = interleavedPicture(*picture);
  EXPECT_EQ(interleaved->format, AV_PIX_FMT_NV12);
  EXPECT_EQ(interleaved->pts, 16);
  EXPECT_EQ(byteAt(*interleaved, 0, 5, 3), byteAt(*picture, 0, 5, 3));
  EXPECT_EQ(byteAt(*interleaved, 1, 4, 1), byteAt(*picture, 1, 2, 1));
  EXPECT_EQ(byteAt(*interleaved, 1, 5, 1), byteAt(*picture, 2, 2, 1));
}

TEST(PictureLayout, MovesTenBitsToTheTop) {
  const AvFramePtr picture = makePicture(6, 4, 16, true);
  const AvFramePtr interleaved = interleavedPicture(*picture);
  EXPECT_EQ(interleaved->format, AV_PIX_FMT_P010);
  EXPECT_EQ(wordAt(*interleaved, 0, 5, 3), wordAt(*picture, 0, 5, 3) * 64);
  EXPECT_EQ(wordAt(*interleaved, 1, 3, 0), wordAt(*picture, 2, 1, 0) * 64);
}

}  // namespace
}  // namespace vantrel
