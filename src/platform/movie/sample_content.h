#pragma once

#include <memory>
#include <utility>

#include "platform/movie/av_ptr.h"
#include "platform/movie/sample_flow.h"

namespace vantrel {

/// A decoded picture or a packet; the other is null. The time stamps inside count as the sample's
/// own time does: from the movie's start, in the time base that stands beside them. Those of the
/// packets of a QuickTime or ISO base media file count on the time line of the track's media, which
/// its edits (MovieTrack::quickTime) map to the movie's. Packets stand as the file has them: AAC in
/// a transport stream has ADTS headers.
struct MovieSample::Content {
  AvFramePtr frame;
  AvPacketPtr packet;
  /// Of the time stamps of `packet`, or of `frame`.
  AVRational timeBase{0, 1};
};

}  // namespace vantrel
