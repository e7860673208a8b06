#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace vantrel {

/// Lives while the toolkit may make the native window of a widget anew, as it does for the first
/// OpenGL surface in a window that is on the screen. Its end puts back what that drops: a maximised
/// window, full screen, and the windows that belong over it. Main thread.
class WindowRemaking final {
 public:
  explicit WindowRemaking(const QWidget& widget);
  ~WindowRemaking();
  Q_DISABLE_COPY_MOVE(WindowRemaking)

 private:
  QWidget* const m_window;
  const QPointer<QWindow> m_native;
  const Qt::WindowStates m_states;
  const QRect m_normalGeometry;
  QList<QPointer<QWindow>> m_over;
};

}  // namespace vantrel
