#include "editor/export_notices.h"

#include <QEvent>

#include "editor/bring_to_front.h"
#include "editor/desktop_notification.h"
#include "editor/export_session.h"

namespace vantrel {
namespace {

bool isSeen(const QWidget& target) {
  return target.isVisible() && target.isActiveWindow();
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
  if (isSeen(editor)) return;
  m_last = new DesktopNotification(notice, this);
  show(*m_last, editor);
}

void ExportNotices::setReview(QWidget& review) {
  if (!m_last) return;
  disconnect(m_last, &DesktopNotification::activated, nullptr, nullptr);
  std::erase_if(m_shown, [this](const auto& shown) { return shown.second == m_last; });
  show(*m_last, review);
  m_last = nullptr;
}

void ExportNotices::show(DesktopNotification& notification, QWidget& target) {
  m_shown.emplace(&target, &notification);
  target.installEventFilter(this);
  connect(&notification, &DesktopNotification::activated, &target,
          [&target] { bringToFront(target); });
  connect(&target, &QObject::destroyed, &notification,
          [this](const QObject* gone) { closeNoticesOf(gone); });
}

bool ExportNotices::eventFilter(QObject* watched, QEvent* event) {
  // Of the activation of their window all learn that are visible in it.
  const bool isShown =
      event->type() == QEvent::Show && static_cast<QWidget*>(watched)->isActiveWindow();
  if (isShown || event->type() == QEvent::WindowActivate) closeNoticesOf(watched);
  return QObject::eventFilter(watched, event);
}

void ExportNotices::closeNoticesOf(const QObject* target) {
  const auto [first, last] = m_shown.equal_range(target);
  for (auto shown = first; shown != last; ++shown) {
    // One may be telling of its click just now.
    if (shown->second) shown->second->deleteLater();
  }
  m_shown.erase(first, last);
}

}  // namespace vantrel
