#include "canvas/window_remaking.h"

#include <QGuiApplication>

namespace vantrel {

WindowRemaking::WindowRemaking(const QWidget& widget)
    : m_window(widget.window()),
      m_native(m_window->windowHandle()),
      m_states(m_window->windowState()),
      m_normalGeometry(m_window->normalGeometry()) {
  if (!m_native) return;
  for (QWindow* const window : QGuiApplication::allWindows()) {
    if (window->transientParent() == m_native) m_over << window;
  }
}

WindowRemaking::~WindowRemaking() {
  QWindow* const native = m_window->windowHandle();
  if (!native || m_native == native || !m_window->isVisible()) return;
  // The widget still believes in its state.
  if (native->windowStates() != m_states) {
    // What it goes back to when it is no longer maximised.
    if (!m_normalGeometry.isEmpty()) native->setGeometry(m_normalGeometry);
    native->setWindowStates(m_states);
  }
  for (const QPointer<QWindow>& over : m_over) {
    if (!over) continue;
    over->setTransientParent(native);
    if (!over->isVisible()) continue;
    over->raise();
    over->requestActivate();
  }
}

}  // namespace vantrel
