#pragma once

#include "platform/movie/av_ptr.h"

namespace vantrel {

/// The planar 4:2:0 picture made wider and higher at the right and at the bottom by repeating its
/// edge. Both sides are even. Time stamps and side data follow.
[[nodiscard]] AvFramePtr paddedPicture(const AVFrame& picture, int width, int height);

/// A YUV420P picture as NV12, or a YUV420P10 one as P010: the same samples, the two chroma planes
/// in one. Time stamps and side data follow.
[[nodiscard]] AvFramePtr interleavedPicture(const AVFrame& picture);

}  // namespace vantrel
