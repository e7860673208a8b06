#pragma once

#include <QObject>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/movie/movie.h"
#include "platform/movie/video_picture_reader.h"

namespace vantrel {

class MoviePictures;

/// Decodes the pictures of a movie on a thread of its own: those that are sought, one after the
/// other, and on request some ahead of the one sought last. Nothing blocks but the destructor, for
/// as long as decoding a picture takes. Main thread.
class PictureFeed final {
 public:
  /// What became of a seek.
  struct Landing {
    int64_t number = 0;
    /// Absent if the movie has no pictures, or the seek failed.
    std::optional<TimedVideoPicture> picture;
    bool hasFailed = false;
  };
  /// Where the pictures end, in seconds, or where decoding them has failed.
  struct End {
    double time = 0;
    bool hasFailed = false;
  };

  /// `track` absent: has no pictures. `landed` is called from the event loop, once for each seek
  /// that no newer one has replaced, in their order; it may destroy the feed.
  PictureFeed(const Movie& movie, std::optional<MovieTrack> track,
              std::function<void(Landing)> landed);
  ~PictureFeed();
  PictureFeed(const PictureFeed&) = delete;
  PictureFeed& operator=(const PictureFeed&) = delete;

  /// To the picture that is shown at a time; numbers rise from 1. Replaces the one that waits for
  /// the running one, which is returned.
  std::optional<int64_t> seek(int64_t number, MediaTime to);
  /// Whether pictures are decoded ahead.
  void setAhead(bool ahead);

  /// Whether the newest seek has landed and pictures that follow, if there are any, are at hand.
  [[nodiscard]] bool isReady() const;
  /// The newest of the pictures ahead that are shown by this time, in seconds; none if no further
  /// one is. Pictures that came too late for it are left out from now on.
  [[nodiscard]] std::optional<TimedVideoPicture> take(double time);
  /// Once all pictures that follow the newest seek have been decoded.
  [[nodiscard]] std::optional<End> end() const;

 private:
  struct Seek {
    int64_t number = 0;
    MediaTime to;
  };

  void run(const std::stop_token& stop);
  void land(MoviePictures* pictures, const Seek& seek);
  void decodeAhead(MoviePictures* pictures);
  [[nodiscard]] bool hasRoom() const;
  void deliver();

  const Movie m_movie;
  const std::optional<MovieTrack> m_track;
  const std::function<void(Landing)> m_landed;
  /// Receives what comes from the thread.
  QObject m_receiver;

  // Under m_mutex.
  mutable std::mutex m_mutex;
  std::condition_variable_any m_wished;
  std::optional<Seek> m_seek;
  int64_t m_newest = 0, m_newestLanded = 0;
  std::deque<Landing> m_landings;
  bool m_isAhead = false;
  std::deque<TimedVideoPicture> m_ahead;
  std::optional<End> m_end;
  /// Seconds of the movie, as the player told last.
  double m_now = 0;

  // The decoding thread.
  std::optional<TimedVideoPicture> m_last;

  /// The last member: it ends before all others.
  std::jthread m_thread;
};

}  // namespace vantrel
