#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <map>

#include "editor/export_notice.h"

namespace vantrel {

class DesktopNotification;
class ExportSession;

/// Tells the desktop of exports that end unseen: in windows that are not active, or behind another
/// tab. A click on the notice brings the review to the front, or the editor, with its tab, if there
/// is none; the notice goes when that is seen or closed. Main thread.
class ExportNotices final : public QObject {
 public:
  using QObject::QObject;

  /// Tells of these exports from now on. `editor` is the editor that they are of.
  void watch(ExportSession& exports, QWidget& editor);
  /// The window that has opened for the export that ended last.
  void setReview(QWidget& review);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void tell(const ExportNotice& notice, QWidget& editor);
  void show(DesktopNotification& notification, QWidget& target);
  void closeNoticesOf(const QObject* target);

  /// By the editor or window that each leads to.
  std::multimap<const QObject*, QPointer<DesktopNotification>> m_shown;
  /// Of the export that ended last, until its review is there.
  QPointer<DesktopNotification> m_last;
};

}  // namespace vantrel
