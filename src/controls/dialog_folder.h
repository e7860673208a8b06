#pragma once

#include <QString>

/// Where dialogs that ask for a file begin: all of them in the folder in which the last one ended.
/// Main thread.
namespace vantrel::DialogFolder {

/// Empty if there was none yet, or its folder is gone.
[[nodiscard]] QString last();
/// A dialog has ended with this path.
void remember(const QString& file);

}  // namespace vantrel::DialogFolder
