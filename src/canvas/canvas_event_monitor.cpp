#include "canvas/canvas_event_monitor.h"

#include <QApplication>
#include <QKeyEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>

namespace vantrel {
namespace {

/// A held key that repeats seems to come up each time.
bool endsSpace(const QKeyEvent& event) {
  return event.type() == QEvent::KeyRelease && event.key() == Qt::Key_Space &&
         !event.isAutoRepeat();
}

/// Whether the keys write into a text field.
bool isTyping(const QWidget& window) {
  const QWidget* const focused = window.focusWidget();
  return focused && focused->testAttribute(Qt::WA_InputMethodEnabled);
}

}  // namespace

CanvasEventMonitor::CanvasEventMonitor(QWidget& canvas) : QObject(&canvas), m_canvas(canvas) {
  canvas.installEventFilter(this);
}

CanvasInput::WheelMotion CanvasEventMonitor::motionOf(const QWheelEvent& event) {
  // The distances that come with the notches of a mouse are made up.
  const bool isPrecise = event.phase() != Qt::NoScrollPhase ||
                         event.pointingDevice()->type() == QInputDevice::DeviceType::TouchPad;
  return {isPrecise ? event.pixelDelta() : QPoint(), event.angleDelta()};
}

bool CanvasEventMonitor::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
      if (watched == &m_canvas) qApp->installEventFilter(this);
      return false;
    case QEvent::Hide:
      if (watched == &m_canvas) qApp->removeEventFilter(this);
      [[fallthrough]];
    case QEvent::WindowDeactivate:
    case QEvent::EnabledChange:
      // The key may come up where nobody here sees it.
      if (watched == &m_canvas) setSpaceHeld(false);
      return false;
    case QEvent::Wheel:
    case QEvent::NativeGesture:
      return isOurs(watched) && takeZoom(*event);
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
      if (isOurs(watched)) return takeKey(*static_cast<QKeyEvent*>(event));
      if (endsSpace(*static_cast<QKeyEvent*>(event))) setSpaceHeld(false);
      return false;
    default:
      return false;
  }
}

bool CanvasEventMonitor::isOurs(const QObject* target) const {
  const QWidget* const window = m_canvas.window();
  if (!m_canvas.isEnabled() || QApplication::activeWindow() != window ||
      QApplication::activePopupWidget()) {
    return false;
  }
  if (target->isWindowType()) return target == window->windowHandle();
  return target->isWidgetType() && static_cast<const QWidget*>(target)->window() == window;
}

bool CanvasEventMonitor::takeZoom(QEvent& event) {
  if (event.type() == QEvent::Wheel) {
    const auto& wheel = static_cast<const QWheelEvent&>(event);
    if (!wheel.modifiers().testFlag(Qt::ControlModifier)) return false;
    Q_EMIT zoomed(wheel.globalPosition(), CanvasInput::wheelFactor(motionOf(wheel)));
    event.accept();
    return true;
  }
  if (event.type() != QEvent::NativeGesture) return false;
  const auto& gesture = static_cast<const QNativeGestureEvent&>(event);
  if (gesture.gestureType() == Qt::ZoomNativeGesture) {
    Q_EMIT zoomed(gesture.globalPosition(), CanvasInput::pinchFactor(gesture.value()));
  } else if (gesture.gestureType() == Qt::SmartZoomNativeGesture) {
    Q_EMIT fitRequested();
  } else {
    return false;
  }
  event.accept();
  return true;
}

bool CanvasEventMonitor::takeKey(QKeyEvent& event) {
  const bool isRelease = event.type() == QEvent::KeyRelease;
  CanvasInput::Key key{event.key(), event.modifiers(), !isRelease};
  bool typing = isTyping(*m_canvas.window());
  if (m_isSpaceHeld && isRelease) {
    // Whatever has the focus by now, this is the end of what began here.
    key.modifiers = {};
    typing = false;
  }
  const CanvasInput::KeyAction action = CanvasInput::keyAction(key, typing, m_previewOnly);
  if (action == CanvasInput::KeyAction::pass) return false;
  event.accept();
  // Accepted, an override keeps shortcuts away from the key, which then comes as a press.
  if (event.type() == QEvent::ShortcutOverride) return true;
  if (isRelease && !endsSpace(event)) return true;
  if (action == CanvasInput::KeyAction::exitPreview) {
    Q_EMIT exitPreviewRequested();
  } else {
    setSpaceHeld(action == CanvasInput::KeyAction::armPan);
  }
  return true;
}

void CanvasEventMonitor::setSpaceHeld(bool held) {
  if (held == m_isSpaceHeld) return;
  m_isSpaceHeld = held;
  Q_EMIT spaceHeldChanged(held);
}

}  // namespace vantrel
