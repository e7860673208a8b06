#include "platform/movie/shown_span.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <algorithm>

namespace vantrel {
namespace {

/// Damage alone explains more ticks.
constexpr int64_t kMostTicks = int64_t{1} << 55;

/// A stretch of time in other ticks; 0 for what is none or explained by damage alone.
int64_t rescaled(int64_t ticks, int64_t to, int64_t from) {
  return std::clamp<int64_t>(av_rescale(ticks, to, from), 0, kMostTicks);
}

}  // namespace

std::vector<QuickTimeEdit> editsShowing(int64_t start, int64_t end, int64_t origin,
                                        int32_t timescale, int32_t movieTimescale) {
  const auto inMovie = [=](int64_t ticks) { return rescaled(ticks, movieTimescale, timescale); };
  std::vector<QuickTimeEdit> edits;
  const int64_t shown = std::max<int64_t>(start, 0);
  const int64_t delay = inMovie(shown);
  if (delay > 0) edits.push_back({delay, -1});
  edits.push_back({std::max<int64_t>(inMovie(end) - delay, 1), shown - origin});
  return edits;
}

std::vector<QuickTimeEdit> convertedEdits(const std::vector<QuickTimeEdit>& edits,
                                          int64_t sourceTimescale, int64_t origin, int64_t end,
                                          int32_t timescale, int32_t movieTimescale) {
  const auto inMovie = [=](int64_t ticks) { return rescaled(ticks, movieTimescale, timescale); };
  std::vector<QuickTimeEdit> converted;
  for (const QuickTimeEdit& edit : edits) {
    if (edit.mediaTime < 0) {
      converted.push_back(edit);
      continue;
    }
    const int64_t start = rescaled(edit.mediaTime, timescale, sourceTimescale);
    const bool isOpen = edit.segmentDuration == 0 && &edit == &edits.back();
    const int64_t length = isOpen ? inMovie(end - start) : edit.segmentDuration;
    const int64_t empty = std::min(inMovie(origin - start), length);
    if (empty > 0) converted.push_back({empty, -1});
    if (empty > 0 && empty == length) continue;
    converted.push_back({length - empty, std::max<int64_t>(start - origin, 0), edit.mediaRate});
  }
  return converted;
}

}  // namespace vantrel
