#pragma once

#include <QObject>
#include <QPointF>

#include "canvas/canvas_input.h"

class QKeyEvent;
class QWheelEvent;
class QWidget;

namespace vantrel {

/// Sees the events of the application before any view does and takes those that move the canvas of
/// the active window, wherever in the window they land. Main thread.
class CanvasEventMonitor final : public QObject {
  Q_OBJECT

 public:
  /// Watches while `canvas`, its parent, is shown and enabled.
  explicit CanvasEventMonitor(QWidget& canvas);

  [[nodiscard]] static CanvasInput::WheelMotion motionOf(const QWheelEvent& event);

  void setPreviewOnly(bool previewOnly) { m_previewOnly = previewOnly; }
  /// True for a wheel with the zoom key, a pinch and a smart zoom, which it then acts on, whatever
  /// the window.
  bool takeZoom(QEvent& event);

 Q_SIGNALS:
  void spaceHeldChanged(bool held);
  /// `position` is on the screen, in points.
  void zoomed(const QPointF& position, double factor);
  void fitRequested();
  void exitPreviewRequested();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool isOurs(const QObject* target) const;
  bool takeKey(QKeyEvent& event);
  void setSpaceHeld(bool held);

  QWidget& m_canvas;
  bool m_previewOnly = false;
  bool m_isSpaceHeld = false;
};

}  // namespace vantrel
