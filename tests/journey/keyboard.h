#pragma once

#include <QAccessible>
#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QWindow>
#include <string>

#include "journey/accessible_tree.h"

namespace vantrel::testing {

/// What a user does without a mouse: keys go to the window in front, and what has the focus takes
/// them.
class Keyboard final {
 public:
  /// Waits until the keys go to this window; false when they never do.
  static bool isIn(const QWidget* window) {
    return QTest::qWaitFor([window] {
      return window->isActiveWindow() && QGuiApplication::focusWindow() == window->windowHandle();
    });
  }
  static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QGuiApplication::focusWindow(), key, modifiers);
    QCoreApplication::processEvents();
  }
  static void press(Qt::Key key, int times) {
    for (int count = 0; count < times; ++count)
      press(key);
  }
  static void type(const std::string& text) {
    for (const char letter : text)
      QTest::keyClick(QGuiApplication::focusWindow(), letter);
    QCoreApplication::processEvents();
  }

  /// The item that has the focus, as assistive tools are told; null for none.
  static QAccessibleInterface* focused() {
    QWidget* const widget = QApplication::focusWidget();
    QAccessibleInterface* const item = QAccessible::queryAccessibleInterface(widget);
    if (!item) return nullptr;
    QAccessibleInterface* const child = item->focusChild();
    return child ? child : item;
  }
  static QString focusedName() {
    const QAccessibleInterface* const item = focused();
    return item ? nameOf(*item) : QString();
  }

  /// Whether the Tab key, or with Shift, leads to the item of this name.
  static bool tabTo(const QString& name, Qt::KeyboardModifiers modifiers = {}) {
    constexpr int kMoreThanAll = 100;
    for (int count = 0; count < kMoreThanAll; ++count) {
      if (focusedName() == name) return true;
      press(modifiers ? Qt::Key_Backtab : Qt::Key_Tab, modifiers);
    }
    return false;
  }
  /// Chooses from the menu that this key opens. False when the menu, or what it is to hold, is not
  /// there or not enabled.
  static bool choose(Qt::Key menuKey, Qt::KeyboardModifiers modifiers, const QString& item) {
    press(menuKey, modifiers);
    const auto open = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
    if (!QTest::qWaitFor([&] { return open() && open()->isVisible(); })) return false;
    return chooseFromOpenMenu(item);
  }
  static bool chooseFromOpenMenu(const QString& item) {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu) return false;
    for (int count = 0; count <= menu->actions().size(); ++count) {
      if (menu->activeAction() && menu->activeAction()->text() == item) {
        press(Qt::Key_Return);
        return true;
      }
      press(Qt::Key_Down);
    }
    press(Qt::Key_Escape);
    return false;
  }
};

}  // namespace vantrel::testing
