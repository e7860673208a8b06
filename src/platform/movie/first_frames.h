#pragma once

#include <map>
#include <vector>

#include "platform/movie/movie_input.h"

namespace vantrel {

/// The first picture of each of these video streams that can be decoded, by stream index. Reads on
/// from where `input` stands and gives up after a while: a stream whose beginning is damaged or far
/// off has none. Throws std::system_error or Cancelled.
[[nodiscard]] std::map<int, AvFramePtr> decodeFirstFrames(MovieInput& input,
                                                          const std::vector<int>& streams);

}  // namespace vantrel
