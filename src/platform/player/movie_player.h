#pragma once

#include <memory>
#include <optional>

#include "platform/movie/movie.h"
#include "platform/player/player.h"

namespace vantrel {

/// The player of an opened movie: its first video track and, if it has one, its first enabled audio
/// track. It decodes on threads of its own, which end with it within a fraction of a second. What
/// cannot be decoded ends the playback there; nothing is reported.
class MoviePlayer final : public Player {
  Q_OBJECT

 public:
  /// Begins paused at the movie's first picture. Does not block.
  explicit MoviePlayer(const Movie& movie, QObject* parent = nullptr);
  ~MoviePlayer() override;

  [[nodiscard]] std::shared_ptr<const VideoPicture> picture() const override;
  [[nodiscard]] double currentTime() const override;
  [[nodiscard]] double duration() const override;
  [[nodiscard]] double rate() const override;
  [[nodiscard]] bool isMuted() const override;

  void play() override;
  void pause() override;
  void setMuted(bool muted) override;
  using Player::seek;
  void seek(MediaTime to, SeekDone done) override;

  /// Seconds of the movie whose sound leaves the device at this moment; absent while there is none.
  [[nodiscard]] std::optional<double> heardTime() const;

 private:
  class Engine;
  std::unique_ptr<Engine> m_engine;
};

}  // namespace vantrel
