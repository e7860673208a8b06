#pragma once

#include <QObject>
#include <memory>

#include "editor/export_notice.h"

namespace vantrel {

/// A notice on the desktop (org.freedesktop.Notifications), from its creation until the user closes
/// it or this object goes. Nothing waits for the service; where there is none, nothing is shown.
/// Main thread.
class DesktopNotification final : public QObject {
  Q_OBJECT

 public:
  explicit DesktopNotification(const ExportNotice& notice, QObject* parent = nullptr);
  ~DesktopNotification() override;

 Q_SIGNALS:
  /// The user clicked it.
  void activated();

 private Q_SLOTS:
  void takeAction(uint id, const QString& key);
  void takeToken(uint id, const QString& token);
  void takeClosing(uint id, uint reason);

 private:
  /// As much as outlives this object while the service has not answered yet.
  struct Shown;

  void listen();
  void send(const ExportNotice& notice);
  [[nodiscard]] bool isOwn(uint id) const;

  std::shared_ptr<Shown> m_shown;
};

}  // namespace vantrel
