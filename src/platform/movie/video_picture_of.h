#pragma once

#include <memory>

#include "platform/movie/av_ptr.h"
#include "platform/movie/video_picture.h"

namespace vantrel {

/// A decoded frame of `track` as a picture to show. Planes of plain integers are the frame's own;
/// what is packed, semi-planar, of a palette or in the other byte order is unpacked, and alpha is
/// dropped. Whatever its size is, it fills the track's natural size. Throws Failure for a pixel
/// format that cannot be converted. Any thread.
[[nodiscard]] std::shared_ptr<const VideoPicture> videoPictureOf(AvFramePtr frame,
                                                                 const MovieTrack& track);

}  // namespace vantrel
