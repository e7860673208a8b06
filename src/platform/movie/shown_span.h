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

/// The edit list of another file for a track whose media time line has its zero at `origin` of that
/// file's and holds samples until `end`, both in ticks of the track as the file's times are, whose
/// own ticks are `sourceTimescale`. Time without samples becomes an empty edit. A last edit of no
/// length, as fragmented movies have it, gets the length of the samples.
[[nodiscard]] std::vector<QuickTimeEdit> convertedEdits(const std::vector<QuickTimeEdit>& edits,
                                                        int64_t sourceTimescale, int64_t origin,
                                                        int64_t end, int32_t timescale,
                                                        int32_t movieTimescale);

}  // namespace vantrel
