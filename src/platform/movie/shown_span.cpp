#include "platform/movie/shown_span.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>

namespace vantrel {

std::vector<QuickTimeEdit> editsShowing(int64_t start, int64_t end, int64_t origin,
                                        int32_t timescale, int32_t movieTimescale) {
  const auto inMovie = [=](int64_t ticks) { return av_rescale(ticks, movieTimescale, timescale); };
  std::vector<QuickTimeEdit> edits;
  const int64_t shown = std::max<int64_t>(start, 0);
  const int64_t delay = inMovie(shown);
  if (delay > 0) edits.push_back({delay, -1});
  edits.push_back({std::max<int64_t>(inMovie(end) - delay, 1), shown - origin});
  return edits;
}

}  // namespace vantrel
