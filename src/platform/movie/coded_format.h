#pragma once

#include "platform/movie/av_ptr.h"
#include "platform/movie/movie.h"

namespace vantrel {

/// What a demuxer tells of a stream before its first packet. Not changed once made, so that tracks
/// may share it among threads.
struct CodedFormat {
  AvCodecParametersPtr parameters;
  AVRational timeBase{0, 1};
};

}  // namespace vantrel
