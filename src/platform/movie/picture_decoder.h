#pragma once

#include <optional>
#include <stop_token>
#include <vector>

#include "platform/movie/frame_decoder.h"
#include "platform/movie/media_time.h"
#include "platform/movie/movie_segments.h"

namespace vantrel {

/// A picture as decoded, and when the movie shows it. The frame's own time stamps say the same, in
/// ticks of `time`'s timescale.
struct DecodedPicture {
  AvFramePtr frame;
  /// From the movie's start, never negative; and until the next picture, or the end.
  MediaTime time, duration;
};

/// The pictures that a movie shows of a video track, each at its time on the movie's time line,
/// which rises strictly. Edit lists are obeyed: of a picture that lies across the start or the end
/// of an edit the part inside is shown, and pictures that several edits hold come several times.
/// One thread at a time.
class PictureDecoder final {
 public:
  /// Throws what MovieInput::open throws, and MovieError if nothing decodes the track.
  PictureDecoder(const Movie& movie, const MovieTrack& track, const std::stop_token& stop);

  /// Ticks per second of its times.
  [[nodiscard]] int32_t timescale() const { return m_frames.stream().time_base.den; }

  /// As Demuxer does.
  void requireWholeFile() { m_frames.requireWholeFile(); }

  /// None at the end. Throws MovieError, std::system_error or Cancelled.
  [[nodiscard]] std::optional<DecodedPicture> next();

  /// `next` then gives the picture that is shown at this time, whole, or else the first one behind
  /// it; before it, those of the last `lead` in front of that time that are decoded on the way.
  void seek(MediaTime time, MediaTime lead = {0, 1});

 private:
  struct Span {
    int64_t start = 0, end = 0;
  };

  void enterSegment(int64_t mediaTime);
  /// Makes the decoder stand at or before this time of the segment's media.
  void approach(int64_t mediaTime);
  [[nodiscard]] bool canGoOnTo(size_t segment, int64_t mediaTime) const;
  /// Whether a picture was left out that was to be given in place of this one.
  [[nodiscard]] bool hasMissedBehind(const AVFrame& frame) const;
  [[nodiscard]] std::optional<DecodedPicture> nextInSegment();
  /// When the segment shows a picture of these media times; absent if it does not.
  [[nodiscard]] std::optional<Span> shown(Span media, bool isLast) const;
  [[nodiscard]] int64_t durationOfLast(const AVFrame& frame) const;
  [[nodiscard]] DecodedPicture picture(AvFramePtr frame, Span movieTime) const;

  FrameDecoder m_frames;
  std::vector<MovieSegment> m_segments;
  /// Ticks of one picture at the track's average rate; 0 if unknown.
  int64_t m_averageDuration = 0;
  /// Where the last picture ends, in ticks of the stream; AV_NOPTS_VALUE if only it knows.
  int64_t m_mediaEnd = AV_NOPTS_VALUE;
  /// Whether the decoder is where the track begins.
  bool m_isAtStart = true;

  size_t m_segment = 0;
  bool m_isInSegment = false;
  /// The next picture of the segment; null at the end of the media.
  AvFramePtr m_ahead;
  /// Pictures that end at or before this time of the movie, in ticks of the stream, are not wanted.
  int64_t m_wantedFrom = 0;
  /// Of the media; where the last seek went to.
  int64_t m_soughtTime = 0;
};

}  // namespace vantrel
