#pragma once

#include <optional>

#include "platform/movie/demuxer.h"
#include "platform/movie/movie_segments.h"
#include "platform/movie/reading_state.h"

namespace vantrel {

/// The packets of an audio track, read when they are asked for. `state` outlives it.
class AudioOutput final : public SampleOutput {
 public:
  /// Throws what Demuxer throws, and MovieError for a file that is shorter than it says.
  AudioOutput(ReadingState& state, const Movie& movie, const MovieTrack& track);

  [[nodiscard]] std::optional<MovieSample> copyNextSample() override;

 private:
  [[nodiscard]] MovieSample sample(AvPacketPtr packet) const;

  ReadingState& m_state;
  Demuxer m_demuxer;
  /// The first that the movie shows; absent if it shows none.
  std::optional<MovieSegment> m_segment;
  /// Added to the packets' own times, which stay those of the media where there are edits.
  int64_t m_shift = 0;
  bool m_isCompleted = false;
};

}  // namespace vantrel
