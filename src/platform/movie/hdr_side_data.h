#pragma once

#include "platform/movie/av_ptr.h"
#include "platform/movie/video_color.h"

namespace vantrel {

/// Attaches static HDR metadata to a stream, for its container.
void addHdrSideData(AVStream& stream, const HdrMetadata& metadata);
/// Attaches it to a picture, for encoders that take it from there.
void addHdrSideData(AVFrame& frame, const HdrMetadata& metadata);

}  // namespace vantrel
