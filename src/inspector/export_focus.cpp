#include "inspector/export_focus.h"

#include <QEvent>
#include <QWidget>
#include <utility>

namespace vantrel {
namespace {

/// Also in a window that is not active.
bool hasFocus(const QWidget& widget) {
  return widget.window()->focusWidget() == &widget;
}

}  // namespace

ExportFocus::ExportFocus(QWidget& start, QWidget& cancel) : m_start(start), m_cancel(cancel) {
  start.installEventFilter(this);
}

void ExportFocus::begin() {
  m_begins = hasFocus(m_start);
}

void ExportFocus::enterCancel() {
  const bool begins = std::exchange(m_begins, false);
  if (!begins && !hasFocus(m_start)) return;
  if (m_isByMouse) {
    // Or else it would move on to a field.
    m_start.clearFocus();
  } else {
    m_cancel.setFocus(Qt::OtherFocusReason);
  }
}

void ExportFocus::leaveCancel() {
  if (!hasFocus(m_cancel)) return;
  m_returns = true;
  m_cancel.clearFocus();
}

void ExportFocus::enterStart() {
  if (!std::exchange(m_returns, false)) return;
  const QWidget* const window = m_start.window();
  const QWidget* const focused = window->focusWidget();
  if (!focused || focused == window) m_start.setFocus(Qt::OtherFocusReason);
}

bool ExportFocus::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress) m_isByMouse = true;
  // The latter comes first for a key of the menus.
  if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) {
    m_isByMouse = false;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace vantrel
