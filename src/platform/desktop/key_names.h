#pragma once

#include <QKeySequence>
#include <QString>

namespace vantrel {

/// A shortcut as the running system writes it, for example "Ctrl+O" or "⌘O".
[[nodiscard]] QString keyText(const QKeySequence& keys);
/// The name of the key that commands are given with: "CMD" on macOS, "Ctrl" elsewhere.
[[nodiscard]] QString commandKeyName();

}  // namespace vantrel
