#include "canvas/canvas_pan.h"

namespace vantrel {

CanvasPan::Hand CanvasPan::hand() const {
  if (isPanning() || m_isScrolling) return Hand::closed;
  return m_isSpaceHeld ? Hand::open : Hand::none;
}

bool CanvasPan::begin(Qt::MouseButton button, const QPointF& position,
                      const QPointF& scrollOffset) {
  if (button != Qt::RightButton && button != Qt::MiddleButton && !m_isSpaceHeld) return false;
  m_start = Start{position, scrollOffset};
  return true;
}

std::optional<QPointF> CanvasPan::drag(const QPointF& position) const {
  if (!m_start) return {};
  return m_start->scrollOffset + m_start->position - position;
}

}  // namespace vantrel
