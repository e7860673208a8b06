#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <optional>

class QMessageBox;

namespace vantrel {

/// The alert of a window that tells of something that failed: it is there while there is a message,
/// and says the newest. Where the window is on its way to the screen, it comes after that, to the
/// middle of it. Main thread.
class ErrorAlert final : public QObject {
  Q_OBJECT

 public:
  /// Stands over `parent`, which owns it.
  ErrorAlert(QString title, QWidget* parent);

  /// Shows the message; takes the alert away if it is absent.
  void setMessage(const std::optional<QString>& message);

 Q_SIGNALS:
  /// The alert is gone, however that came about.
  void dismissed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool isWindowComing() const;

  const QString m_title;
  QPointer<QMessageBox> m_box;
};

}  // namespace vantrel
