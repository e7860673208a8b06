#pragma once

#include <optional>

#include "platform/movie/audio_clock.h"
#include "platform/movie/movie_muxer.h"
#include "platform/movie/movie_writer.h"
#include "platform/movie/quicktime_finish.h"
#include "platform/movie/track_pace.h"
#include "platform/movie/writing_state.h"

namespace vantrel {

/// Hands packets of sound on to the muxer, untouched but for their times.
class AudioInput final : public SampleInput {
 public:
  AudioInput(AudioInputSettings settings, WritingState& state, TrackPace& pace);

  /// Before the header is written.
  void addStream(MovieMuxer& muxer);
  /// What rewriting is to make of the track; absent if nothing was written. After the last sample.
  [[nodiscard]] std::optional<QuickTimeTrackChange> change(int32_t movieTimescale) const;
  /// Where the movie starts on the samples' time line.
  void setStart(MediaTime start) { m_sessionStart = start; }

  [[nodiscard]] bool isReadyForMoreMediaData() const override;
  [[nodiscard]] bool append(MovieSample sample) override;
  void markAsFinished() override;

 private:
  void write(AVPacket& packet, AVRational timeBase);
  [[nodiscard]] std::vector<QuickTimeEdit> edits(int32_t movieTimescale) const;
  [[nodiscard]] std::optional<uint16_t> language() const;

  AudioInputSettings m_settings;
  WritingState& m_state;
  TrackPace& m_pace;
  size_t m_track = 0;
  MediaTime m_sessionStart;
  MovieMuxer* m_muxer = nullptr;
  /// The muxer's.
  AVStream* m_stream = nullptr;
  std::optional<AudioClock> m_clock;
};

}  // namespace vantrel
