#include "platform/desktop/key_names.h"

namespace vantrel {
namespace {

/// Needs an application that has a window system.
QList<QKeySequence> withStandardKeys(const QKeySequence& first, QKeySequence::StandardKey command) {
  QList<QKeySequence> keys = QKeySequence::keyBindings(command);
  keys.removeAll(first);
  keys.prepend(first);
  return keys;
}

}  // namespace

QString keyText(const QKeySequence& keys) {
  return keys.toString(QKeySequence::NativeText);
}

QList<QKeySequence> undoKeys() {
  return withStandardKeys(Qt::CTRL | Qt::Key_Z, QKeySequence::Undo);
}

QList<QKeySequence> redoKeys() {
  QList<QKeySequence> keys = withStandardKeys(Qt::CTRL | Qt::SHIFT | Qt::Key_Z, QKeySequence::Redo);
#ifndef Q_OS_MACOS
  // Half of the programs for other systems know only this one.
  const QKeySequence otherKey(Qt::CTRL | Qt::Key_Y);
  if (!keys.contains(otherKey)) keys.append(otherKey);
#endif
  return keys;
}

QString commandKeyName() {
#ifdef Q_OS_MACOS
  return QStringLiteral("CMD");
#else
  return QStringLiteral("Ctrl");
#endif
}

}  // namespace vantrel
