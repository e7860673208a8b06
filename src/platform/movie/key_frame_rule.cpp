#include "platform/movie/key_frame_rule.h"

namespace vantrel {

bool KeyFrameRule::isKeyFrame(int64_t time, std::optional<int64_t> next) {
  const bool isKey = !m_lastKey || next.value_or(time) - *m_lastKey > m_longestInterval;
  if (isKey) m_lastKey = time;
  return isKey;
}

}  // namespace vantrel
