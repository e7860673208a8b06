#pragma once

#include <memory>
#include <optional>
#include <stop_token>

#include "platform/movie/media_time.h"
#include "platform/movie/video_picture.h"

namespace vantrel {

/// A picture that a movie shows, from `time` on for `duration`, both on the movie's time line.
struct TimedVideoPicture {
  std::shared_ptr<const VideoPicture> picture;
  MediaTime time, duration;
};

/// The pictures of a video track, in the order in which they are shown: each once for every time
/// that an edit shows it, at times that rise strictly. One thread at a time; a request to stop may
/// come from any.
class VideoPictureReader final {
 public:
  /// Opens the file again. Throws MovieError if nothing decodes the track, std::system_error or
  /// Cancelled.
  VideoPictureReader(const Movie& movie, const MovieTrack& track, const std::stop_token& stop = {});
  ~VideoPictureReader();
  VideoPictureReader(const VideoPictureReader&) = delete;
  VideoPictureReader& operator=(const VideoPictureReader&) = delete;

  /// None at the end. Throws MovieError, also at the end if more pictures were lost than a viewer
  /// overlooks, Failure for pixels that cannot be converted, std::system_error or Cancelled.
  [[nodiscard]] std::optional<TimedVideoPicture> next();

  /// `next` then gives the picture that is shown at this time, or else the first one behind it; and
  /// before it, in their order, those of the last `lead` in front of that time that are decoded on
  /// the way. A time before the movie's start is its start. Decodes on where that is the shorter
  /// way. Throws as `next` does.
  void seek(MediaTime time, MediaTime lead = {0, 1});

  /// Ticks per second of the pictures' times.
  [[nodiscard]] int32_t timescale() const;

 private:
  class Decoder;
  std::unique_ptr<Decoder> m_decoder;
};

}  // namespace vantrel
