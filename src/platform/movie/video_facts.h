#pragma once

#include "platform/movie/av_ptr.h"
#include "platform/movie/movie.h"

namespace vantrel {

/// Fills in what `track` says of its pictures: sizes, orientation, rate, colour and HDR metadata.
/// `frame` is the first decoded picture; null if there is none. `track.quickTime` is already there.
void describeVideo(MovieTrack& track, const AVStream& stream, const AVFrame* frame);

}  // namespace vantrel
