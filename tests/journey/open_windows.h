#pragma once

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <string>
#include <vector>

#include "export/export_temporary_storage.h"
#include "support/temporary_folder.h"

namespace vantrel::testing {

template <class Widget>
QList<Widget*> visible() {
  QList<Widget*> found;
  for (QWidget* widget : QApplication::allWidgets()) {
    auto* match = qobject_cast<Widget*>(widget);
    if (match && match->isVisible()) found << match;
  }
  return found;
}

/// The one visible widget of this kind, as soon as there is one.
template <class Widget>
Widget* waitFor() {
  constexpr int kPatienceMilliseconds = 60'000;
  if (!QTest::qWaitFor([] { return visible<Widget>().size() == 1; }, kPatienceMilliseconds)) {
    return nullptr;
  }
  return visible<Widget>().first();
}

template <class Widget>
bool waitUntilGone() {
  return QTest::qWaitFor([] { return visible<Widget>().isEmpty(); });
}

/// Gives the window the keyboard, also where no window manager does.
inline bool activate(QWidget* window) {
  window->activateWindow();
  // A window system counts a dialog as active together with what it stands over.
  return QTest::qWaitForWindowActive(window) &&
         QTest::qWaitFor([window] { return window->isActiveWindow(); });
}

/// What lies in the session folder but its lock.
inline std::vector<std::string> sessionFiles() {
  std::vector<std::string> names = namesIn(ExportTemporaryStorage::shared().directory());
  std::erase(names, "session.lock");
  return names;
}

}  // namespace vantrel::testing
