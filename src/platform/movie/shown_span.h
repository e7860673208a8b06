#pragma once

#include <cstdint>
#include <vector>

#include "platform/movie/quicktime_atoms.h"

namespace vantrel {

/// The edit list of a track whose samples are shown from `start` to `end`, both in ticks of the
/// track counted from the movie's start. `origin` is the time at which the track's own media time
/// line has its zero. What lies before the movie's start is not shown.
[[nodiscard]] std::vector<QuickTimeEdit> editsShowing(int64_t start, int64_t end, int64_t origin,
                                                      int32_t timescale, int32_t movieTimescale);

}  // namespace vantrel
