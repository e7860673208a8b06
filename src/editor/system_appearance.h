#pragma once

#include <QObject>

class QDBusVariant;

namespace vantrel {

/// The desktop's wishes: dark or light windows, as the toolkit knows it or as the settings of the
/// desktop portal say (org.freedesktop.appearance, color-scheme), and less motion, as these say
/// (reduced-motion there; enable-animations of org.gnome.desktop.interface). Main thread.
class SystemAppearance final : public QObject {
  Q_OBJECT

 public:
  /// Asks the portal; its answers come as changes, from the event loop.
  explicit SystemAppearance(QObject* parent = nullptr);

  [[nodiscard]] bool prefersDark() const { return m_dark; }
  [[nodiscard]] bool prefersLessMotion() const { return m_reducedMotion || m_noAnimations; }

 Q_SIGNALS:
  void changed();

 private Q_SLOTS:
  void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void askPortal();
  void read(const QString& group, const QString& key);
  void set(bool& wish, bool value);

  bool m_dark;
  bool m_reducedMotion = false, m_noAnimations = false;
};

}  // namespace vantrel
