#pragma once

#include <QString>
#include <filesystem>
#include <optional>

namespace vantrel {

/// Where a file or folder of this name that comes with the program would lie, without a look: in
/// share/vantrel beside the folder of the executable. Needs the QCoreApplication.
[[nodiscard]] QString bundledPath(const QString& name);

/// Where a file that comes with the program lies, in the build tree as where it is installed:
/// share/vantrel beside the folder of the executable. Absent if it is not there. Needs the
/// QCoreApplication.
[[nodiscard]] std::optional<std::filesystem::path> bundledFile(const QString& name);

}  // namespace vantrel
