#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

namespace vantrel {

/// A shortcut as the running system writes it, for example "Ctrl+O" or "⌘O".
[[nodiscard]] QString keyText(const QKeySequence& keys);
/// The name of the key that commands are given with: "CMD" on macOS, "Ctrl" elsewhere.
[[nodiscard]] QString commandKeyName();

/// The shortcuts of Undo and of Redo: first the one to show, then the others that the running
/// system's users may be used to.
[[nodiscard]] QList<QKeySequence> undoKeys();
[[nodiscard]] QList<QKeySequence> redoKeys();

}  // namespace vantrel
