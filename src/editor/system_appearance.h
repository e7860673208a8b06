#pragma once

#include <QObject>

class QDBusVariant;

namespace vantrel {

/// The desktop's wish for dark or light windows: as the toolkit knows it, or as the settings of the
/// desktop portal (org.freedesktop.appearance, color-scheme) say. Main thread.
class SystemAppearance final : public QObject {
  Q_OBJECT

 public:
  /// Asks the portal; its answer comes as a change, from the event loop.
  explicit SystemAppearance(QObject* parent = nullptr);

  [[nodiscard]] bool prefersDark() const { return m_dark; }

 Q_SIGNALS:
  void changed();

 private Q_SLOTS:
  void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void askPortal();
  void setDark(bool dark);

  bool m_dark;
};

}  // namespace vantrel
