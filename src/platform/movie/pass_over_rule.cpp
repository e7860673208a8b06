#include "platform/movie/pass_over_rule.h"

#include <algorithm>

namespace vantrel {

void PassOverRule::passOverUntil(int64_t time) {
  m_until = time;
  m_latest = INT64_MIN;
}

bool PassOverRule::mayLeaveOut(int64_t start, int64_t duration) {
  m_longest = std::max(m_longest, duration);
  if (start + m_longest > m_until) return false;
  m_latest = std::max(m_latest, start);
  return true;
}

}  // namespace vantrel
