#pragma once

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <functional>
#include <stdexcept>
#include <vector>

#include "platform/movie/av_ptr.h"

namespace vantrel::testing {

/// The sample of component `c` at (x, y) of its plane.
using SampleFunction = std::function<int(int c, int x, int y)>;

[[nodiscard]] inline const AVPixFmtDescriptor& descriptorOf(const AVFrame& frame) {
  return *av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
}

[[nodiscard]] inline int planeWidth(const AVFrame& frame, int component) {
  const bool isChroma = component == 1 || component == 2;
  return AV_CEIL_RSHIFT(frame.width, isChroma ? descriptorOf(frame).log2_chroma_w : 0);
}

[[nodiscard]] inline int planeHeight(const AVFrame& frame, int component) {
  const bool isChroma = component == 1 || component == 2;
  return AV_CEIL_RSHIFT(frame.height, isChroma ? descriptorOf(frame).log2_chroma_h : 0);
}

/// A frame in memory whose components have these samples, however its format stores them.
[[nodiscard]] inline AvFramePtr makeFilledFrame(AVPixelFormat format, int width, int height,
                                                const SampleFunction& sample) {
  AvFramePtr frame = makeFrame();
  frame->format = format;
  frame->width = width;
  frame->height = height;
  if (av_frame_get_buffer(frame.get(), 0) < 0) throw std::bad_alloc();
  for (int plane = 0; plane < 4 && frame->buf[plane]; ++plane)
    std::fill_n(frame->buf[plane]->data, frame->buf[plane]->size, uint8_t{0});
  const AVPixFmtDescriptor& descriptor = descriptorOf(*frame);
  for (int c = 0; c < descriptor.nb_components; ++c) {
    std::vector<uint16_t> row(static_cast<size_t>(planeWidth(*frame, c)));
    for (int y = 0; y < planeHeight(*frame, c); ++y) {
      for (int x = 0; x < planeWidth(*frame, c); ++x)
        row[static_cast<size_t>(x)] = static_cast<uint16_t>(sample(c, x, y));
      av_write_image_line2(row.data(), frame->data, frame->linesize, &descriptor, 0, y, c,
                           planeWidth(*frame, c), sizeof row.front());
    }
  }
  return frame;
}

/// A sample of a planar frame in the machine's byte order.
[[nodiscard]] inline int sampleAt(const AVFrame& frame, int plane, int x, int y) {
  const uint8_t* row = frame.data[plane] + static_cast<ptrdiff_t>(y) * frame.linesize[plane];
  if (descriptorOf(frame).comp[0].depth <= 8) return row[x];
  return reinterpret_cast<const uint16_t*>(row)[x];
}

}  // namespace vantrel::testing
