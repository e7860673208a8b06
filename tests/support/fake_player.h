#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "platform/player/player.h"

namespace vantrel::testing {

/// A player that plays nothing: it writes down what it is asked, and seeks land when the test says.
class FakePlayer final : public Player {
 public:
  [[nodiscard]] std::shared_ptr<const VideoPicture> picture() const override {
    return shownPicture;
  }
  [[nodiscard]] double currentTime() const override { return time; }
  [[nodiscard]] double duration() const override { return length; }
  [[nodiscard]] double rate() const override { return m_rate; }
  [[nodiscard]] bool isMuted() const override { return m_isMuted; }

  void play() override {
    log.emplace_back("play");
    setRate(1);
  }
  void pause() override {
    log.emplace_back("pause");
    setRate(0);
  }
  void setMuted(bool muted) override {
    if (!obeysMute) return;
    m_isMuted = muted;
    Q_EMIT mutedChanged();
  }
  using Player::seek;
  void seek(MediaTime to, SeekDone done) override {
    log.push_back("seek " + std::to_string(to.ticks) + "/" + std::to_string(to.timescale) +
                  (done ? "" : " untold"));
    m_seeks.push_back(std::move(done));
  }

  void setRate(double rate) {
    if (rate == m_rate) return;
    m_rate = rate;
    Q_EMIT rateChanged();
  }
  /// Answers the oldest seek that has not been answered.
  void land(bool finished) {
    const SeekDone done = std::move(m_seeks.front());
    m_seeks.pop_front();
    if (done) done(finished);
  }
  [[nodiscard]] size_t unanswered() const { return m_seeks.size(); }
  /// How many connections listen to its time.
  [[nodiscard]] int observers() const { return receivers(SIGNAL(timeChanged(double))); }

  std::shared_ptr<const VideoPicture> shownPicture;
  double time = 0;
  double length = 10;
  bool obeysMute = true;
  std::vector<std::string> log;

 private:
  double m_rate = 0;
  bool m_isMuted = false;
  std::deque<SeekDone> m_seeks;
};

}  // namespace vantrel::testing
