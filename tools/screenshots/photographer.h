#pragma once

#include <QApplication>
#include <QString>
#include <QWidget>
#include <functional>

namespace vantrel {

/// The one visible widget of this kind, the newest of several; null if there is none.
template <class Widget>
Widget* visibleWidget() {
  Widget* found = nullptr;
  for (QWidget* widget : QApplication::allWidgets()) {
    auto* match = qobject_cast<Widget*>(widget);
    if (match && match->isVisible()) found = match;
  }
  return found;
}

/// Runs the event loop until the condition holds. Throws std::runtime_error, with `what` in it,
/// when that takes longer than five minutes.
void waitUntil(const char* what, const std::function<bool()>& condition);

/// Photographs windows as they stand on the screen, with all that floats over them, into PNG files
/// of one folder. Main thread.
class Photographer final {
 public:
  explicit Photographer(QString folder);

  /// Waits until the window is in front and nothing in it moves; then takes it as `name`. Throws
  /// std::runtime_error if there is no such moment, or the file cannot be written.
  void take(const QWidget& window, const QString& name) const;

 private:
  const QString m_folder;
};

}  // namespace vantrel
