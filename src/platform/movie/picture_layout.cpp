#include "platform/movie/picture_layout.h"

#include <algorithm>

namespace vantrel {
namespace {

AvFramePtr emptyPicture(const AVFrame& like, AVPixelFormat format, int width, int height) {
  AvFramePtr picture = makeFrame();
  picture->format = format;
  picture->width = width;
  picture->height = height;
  if (av_frame_get_buffer(picture.get(), 0) < 0 || av_frame_copy_props(picture.get(), &like) < 0) {
    throw std::bad_alloc();
  }
  return picture;
}

bool isTenBit(const AVFrame& picture) {
  return picture.format == AV_PIX_FMT_YUV420P10;
}

template <class Sample>
const Sample* rowOf(const AVFrame& picture, int plane, int row) {
  return reinterpret_cast<const Sample*>(picture.data[plane] +
                                         ptrdiff_t{row} * picture.linesize[plane]);
}
template <class Sample>
Sample* rowOf(AVFrame& picture, int plane, int row) {
  return reinterpret_cast<Sample*>(picture.data[plane] + ptrdiff_t{row} * picture.linesize[plane]);
}

template <class Sample>
void padPlane(const AVFrame& from, AVFrame& to, int plane) {
  const int shift = plane == 0 ? 0 : 1;
  const int width = from.width >> shift, height = from.height >> shift;
  for (int row = 0; row < to.height >> shift; ++row) {
    const auto* source = rowOf<Sample>(from, plane, std::min(row, height - 1));
    auto* target = rowOf<Sample>(to, plane, row);
    std::copy_n(source, width, target);
    std::fill(target + width, target + (to.width >> shift), source[width - 1]);
  }
}

/// `shift` moves the samples to where the format has them.
template <class Sample, int shift>
void interleave(const AVFrame& from, AVFrame& to) {
  for (int row = 0; row < from.height; ++row) {
    const auto* source = rowOf<Sample>(from, 0, row);
    std::transform(source, source + from.width, rowOf<Sample>(to, 0, row),
                   [](Sample sample) { return static_cast<Sample>(sample << shift); });
  }
  for (int row = 0; row < from.height / 2; ++row) {
    const auto* blue = rowOf<Sample>(from, 1, row);
    const auto* red = rowOf<Sample>(from, 2, row);
    auto* target = rowOf<Sample>(to, 1, row);
    for (int column = 0; column < from.width / 2; ++column) {
      target[2 * column] = static_cast<Sample>(blue[column] << shift);
      target[2 * column + 1] = static_cast<Sample>(red[column] << shift);
    }
  }
}

}  // namespace

AvFramePtr paddedPicture(const AVFrame& picture, int width, int height) {
  AvFramePtr padded =
      emptyPicture(picture, static_cast<AVPixelFormat>(picture.format), width, height);
  for (int plane = 0; plane < 3; ++plane) {
    if (isTenBit(picture)) {
      padPlane<uint16_t>(picture, *padded, plane);
    } else {
      padPlane<uint8_t>(picture, *padded, plane);
    }
  }
  return padded;
}

AvFramePtr interleavedPicture(const AVFrame& picture) {
  // P010 has its ten bits at the top of sixteen.
  constexpr int kTenBitShift = 6;
  AvFramePtr interleaved =
      emptyPicture(picture, isTenBit(picture) ? AV_PIX_FMT_P010 : AV_PIX_FMT_NV12, picture.width,
                   picture.height);
  if (isTenBit(picture)) {
    interleave<uint16_t, kTenBitShift>(picture, *interleaved);
  } else {
    interleave<uint8_t, 0>(picture, *interleaved);
  }
  return interleaved;
}

}  // namespace vantrel
