#include "editor/tab_keys.h"

#include <QAction>
#include <QTabBar>

namespace vantrel {
namespace {

// The key that makes Tab switch tabs; the toolkit's own keys for going back miss what many
// keyboards send.
#ifdef Q_OS_MACOS
constexpr Qt::KeyboardModifier kTabModifier = Qt::MetaModifier;
#else
constexpr Qt::KeyboardModifier kTabModifier = Qt::ControlModifier;
#endif

/// What moves along the tabs: by one, on or back.
using Step = void (*)(QTabBar& tabs, int step);

void show(QTabBar& tabs, int step) {
  const int count = tabs.count();
  tabs.setCurrentIndex((tabs.currentIndex() + step + count) % count);
}

void move(QTabBar& tabs, int step) {
  const int index = tabs.currentIndex();
  if (index + step >= 0 && index + step < tabs.count()) tabs.moveTab(index, index + step);
}

QList<QKeySequence> standardAnd(QKeySequence::StandardKey standard,
                                const QList<QKeySequence>& more) {
  QList<QKeySequence> keys = QKeySequence::keyBindings(standard);
  // One that is there twice would have no effect.
  for (const QKeySequence& key : more) {
    if (!keys.contains(key)) keys << key;
  }
  return keys;
}

}  // namespace

void addTabKeys(QWidget& window, QTabBar& tabs) {
  const auto add = [&](const QList<QKeySequence>& keys, Step go, int step) {
    auto* const action = new QAction(&window);
    action->setShortcuts(keys);
    QObject::connect(action, &QAction::triggered, &tabs, [&tabs, go, step] { go(tabs, step); });
    window.addAction(action);
  };
  add(standardAnd(QKeySequence::NextChild, {Qt::CTRL | Qt::Key_PageDown}), show, 1);
  add(standardAnd(QKeySequence::PreviousChild,
                  {kTabModifier | Qt::ShiftModifier | Qt::Key_Tab,
                   kTabModifier | Qt::ShiftModifier | Qt::Key_Backtab, Qt::CTRL | Qt::Key_PageUp}),
      show, -1);
  add({Qt::CTRL | Qt::SHIFT | Qt::Key_PageDown}, move, 1);
  add({Qt::CTRL | Qt::SHIFT | Qt::Key_PageUp}, move, -1);
}

}  // namespace vantrel
