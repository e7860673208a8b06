#include "editor/export_notices.h"

#include <QEvent>

#include "editor/desktop_notification.h"
#include "editor/export_session.h"

namespace vantrel {
namespace {

void bringToFront(QWidget& window) {
  window.setWindowState(window.windowState().setFlag(Qt::WindowMinimized, false));
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace

void ExportNotices::watch(ExportSession& exports, QWidget& editor) {
  connect(&exports, &ExportSession::finished, this,
          [this, &editor](const QString& name) { tell(ExportNotice::ofFinished(name), editor); });
  connect(&exports, &ExportSession::failed, this, [this, &editor](const QString& message) {
    tell(ExportNotice::ofFailed(message), editor);
  });
}

void ExportNotices::tell(const ExportNotice& notice, QWidget& editor) {
  m_last = nullptr;
  if (editor.isVisible() && editor.isActiveWindow()) return;
  m_last = new DesktopNotification(notice, this);
  show(*m_last, *editor.window());
}

void ExportNotices::setReview(QWidget& review) {
  if (!m_last) return;
  disconnect(m_last, &DesktopNotification::activated, nullptr, nullptr);
  std::erase_if(m_shown, [this](const auto& shown) { return shown.second == m_last; });
  show(*m_last, *review.window());
  m_last = nullptr;
}

void ExportNotices::show(DesktopNotification& notification, QWidget& window) {
  m_shown.emplace(&window, &notification);
  window.installEventFilter(this);
  connect(&notification, &DesktopNotification::activated, &window,
          [&window] { bringToFront(window); });
  connect(&window, &QObject::destroyed, &notification,
          [this](const QObject* gone) { closeNoticesOf(gone); });
}

bool ExportNotices::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::WindowActivate) closeNoticesOf(watched);
  return QObject::eventFilter(watched, event);
}

void ExportNotices::closeNoticesOf(const QObject* window) {
  const auto [first, last] = m_shown.equal_range(window);
  for (auto shown = first; shown != last; ++shown) {
    // One may be telling of its click just now.
    if (shown->second) shown->second->deleteLater();
  }
  m_shown.erase(first, last);
}

}  // namespace vantrel
