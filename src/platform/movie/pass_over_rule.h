#pragma once

#include <cstdint>

namespace vantrel {

/// Which pictures need not be decoded on the way to a time where no other needs them. Times are
/// ticks, in the order of decoding.
class PassOverRule final {
 public:
  /// Pictures that end at or before this time may be left out from now on.
  void passOverUntil(int64_t time);
  /// What comes now has nothing to do with what came before.
  void restart() { m_longest = 0; }

  /// Whether the next picture may be left out, by its packet's start and duration, which is more
  /// than 0. Durations are often those between decoding times, which reordered pictures of uneven
  /// times do not have: each is taken to last as long as the longest since the restart.
  [[nodiscard]] bool mayLeaveOut(int64_t start, int64_t duration);

  /// The latest start of the pictures that were allowed to be left out since the last
  /// `passOverUntil`; INT64_MIN if there was none.
  [[nodiscard]] int64_t latest() const { return m_latest; }

 private:
  int64_t m_until = INT64_MIN;
  int64_t m_longest = 0;
  int64_t m_latest = INT64_MIN;
};

}  // namespace vantrel
