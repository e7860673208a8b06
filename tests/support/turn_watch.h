#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPixmap>
#include <QTest>
#include <QWidget>
#include <algorithm>
#include <cstdint>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

namespace vantrel::testing {

/// What the calling thread did in one piece; times in milliseconds.
struct Turn {
  double wall = 0;
  /// Its own processor time, which does not depend on what else runs on the machine.
  double processor = 0;
  /// What it slept for something: neither running nor waiting for a processor. A frame that is
  /// drawn without a graphics card is slept for too.
  double blocked = 0;
  /// What it has read from files itself, in bytes.
  int64_t read = 0;
};

/// The longest turns of the main event loop. Main thread.
class TurnWatch final {
 public:
  /// What no turn may take, in milliseconds of processor time.
  static constexpr double kLimit = 50;
  /// The same on a machine that is too slow for that: in paintings of a whole window.
  static constexpr double kMostPaintings = 8;

  /// Processor time of painting the window once on this machine at this moment, in milliseconds.
  static double paintingOf(QWidget& window) {
    constexpr int kTries = 9;
    std::vector<double> times;
    for (int number = 0; number < kTries; ++number) {
      const Turn before = now();
      // A repainting is put off where the last one is too recent.
      std::ignore = window.grab();
      times.push_back(now().processor - before.processor);
    }
    std::sort(times.begin(), times.end());
    return times[kTries / 2];
  }

  /// Where a painting takes so long.
  static double limitFor(double painting) { return std::max(kLimit, kMostPaintings * painting); }

  /// Runs `work` as a turn of its own, as an event would.
  void run(const std::function<void()>& work) {
    const Turn before = now();
    work();
    const Turn after = now();
    m_longest.wall = std::max(m_longest.wall, after.wall - before.wall);
    m_longest.processor = std::max(m_longest.processor, after.processor - before.processor);
    m_longest.blocked = std::max(m_longest.blocked, after.blocked - before.blocked);
    m_longest.read += after.read - before.read;
  }

  /// Turns the event loop until `done`; false if that does not come.
  bool waitFor(const std::function<bool()>& done) {
    constexpr int kPatienceMilliseconds = 120'000;
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
      if (clock.hasExpired(kPatienceMilliseconds)) return false;
      QTest::qSleep(1);
      run([] { QCoreApplication::processEvents(); });
    }
    return true;
  }

  /// The most of each kind in one turn, and all that was read.
  [[nodiscard]] const Turn& longest() const { return m_longest; }

 private:
  static Turn now() {
    timespec processor{}, wall{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &processor);
    ::clock_gettime(CLOCK_MONOTONIC, &wall);
    // Nanoseconds on a processor, and waiting for one.
    int64_t ran = 0, waited = 0;
    std::ifstream("/proc/thread-self/schedstat") >> ran >> waited;
    Turn turn{milliseconds(wall), milliseconds(processor), 0, 0};
    turn.blocked = turn.wall - turn.processor - static_cast<double>(waited) / 1e6;
    std::string name;
    std::ifstream("/proc/thread-self/io") >> name >> turn.read;
    return turn;
  }
  static double milliseconds(const timespec& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
  }

  Turn m_longest;
};

}  // namespace vantrel::testing
