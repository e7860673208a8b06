#pragma once

#include <cstdint>
#include <optional>

namespace vantrel {

/// Chooses key frames by time, so that at any frame rate no picture is further than a limit behind
/// the last key frame, as far as pictures stand that close. Times are in ticks and rise.
class KeyFrameRule final {
 public:
  explicit KeyFrameRule(int64_t longestInterval) : m_longestInterval(longestInterval) {}

  /// Whether the picture at `time` is to be a key frame: the first one is, and every one whose
  /// successor at `next` would come too late. `next` is absent for the last picture.
  [[nodiscard]] bool isKeyFrame(int64_t time, std::optional<int64_t> next);

 private:
  int64_t m_longestInterval = 0;
  std::optional<int64_t> m_lastKey;
};

}  // namespace vantrel
