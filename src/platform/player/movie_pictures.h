#pragma once

#include <cstdint>
#include <optional>
#include <stop_token>

#include "platform/movie/video_picture_reader.h"
#include "platform/player/picture_cache.h"

namespace vantrel {

/// The pictures of a movie by their times, for which it goes back and forth in the file as little
/// as it can. What was decoded lately is at hand. One thread at a time; a request to stop may come
/// from any. Everything throws as VideoPictureReader does, and goes on with another time after
/// that.
class MoviePictures final {
 public:
  /// At most so many bytes of pictures are kept.
  MoviePictures(const Movie& movie, const MovieTrack& track, const std::stop_token& stop,
                size_t mostBytes = PictureCache::kMostBytes);

  /// The picture that is shown at this time; or else the first one behind it; or else the last one.
  /// None if the movie has no pictures.
  [[nodiscard]] std::optional<TimedVideoPicture> at(MediaTime time);

  /// The picture behind that one, or the one that is shown at the time `atLeast`, whichever comes
  /// later; none behind the last.
  [[nodiscard]] std::optional<TimedVideoPicture> behind(const TimedVideoPicture& shown,
                                                        MediaTime atLeast);

 private:
  [[nodiscard]] int64_t ticks(MediaTime time) const;
  [[nodiscard]] std::optional<TimedVideoPicture> at(int64_t time);
  [[nodiscard]] std::optional<TimedVideoPicture> decodedAt(int64_t time, int64_t lead);
  /// Those that are worth to be kept in front of a picture that lies before the last one.
  [[nodiscard]] int64_t leadOf(int64_t time) const;
  [[nodiscard]] std::optional<TimedVideoPicture> next();

  VideoPictureReader m_reader;
  PictureCache m_cache;
  /// What the reader gave last; absent when it may stand anywhere else than behind it.
  std::optional<TimedVideoPicture> m_read;
  /// Where the last picture begins, once it is known.
  std::optional<int64_t> m_lastStart;
  /// What was asked for last.
  std::optional<TimedVideoPicture> m_landed;
};

}  // namespace vantrel
