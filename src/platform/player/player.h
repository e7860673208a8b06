#pragma once

#include <functional>

#include "platform/movie/media_time.h"
#include "platform/movie/video_picture_source.h"

namespace vantrel {

/// Plays one movie: its picture, as a VideoPictureSource, and its sound. Main thread; signals come
/// from the event loop, never from within a call, unless said otherwise.
class Player : public VideoPictureSource {
  Q_OBJECT

 public:
  /// Told on the main thread, from the event loop, once: true when the seek has landed and its
  /// picture is the current one, false when a newer seek or the end of the player came first.
  using SeekDone = std::function<void(bool finished)>;

  using VideoPictureSource::VideoPictureSource;

  /// Seconds from the movie's start, never negative: where a seek goes to as soon as it is asked
  /// for; at the end the duration.
  [[nodiscard]] virtual double currentTime() const = 0;
  /// Seconds; not a number if the movie does not tell it.
  [[nodiscard]] virtual double duration() const = 0;
  /// Seconds of the movie for each second; 0 while paused.
  [[nodiscard]] virtual double rate() const = 0;
  [[nodiscard]] virtual bool isMuted() const = 0;

  /// Sets the rate to 1; at the end it starts over.
  virtual void play() = 0;
  virtual void pause() = 0;
  virtual void setMuted(bool muted) = 0;
  /// To the picture that the movie shows at this time. One seek runs at a time; of those asked for
  /// meanwhile only the newest follows. A running movie goes on from there.
  virtual void seek(MediaTime to, SeekDone done) = 0;
  void seek(MediaTime to) { seek(to, {}); }

 Q_SIGNALS:
  /// Also emitted within `play` and `pause`.
  void rateChanged();
  /// Also emitted within `setMuted`.
  void mutedChanged();
  /// 60 times a second while the time passes, and after each seek.
  void timeChanged(double seconds);
  /// Played to the end; the rate is 0, the last picture stays.
  void ended();
};

}  // namespace vantrel
