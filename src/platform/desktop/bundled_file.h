#pragma once

#include <QString>
#include <filesystem>
#include <optional>

namespace vantrel {

/// Where a file that comes with the program lies, in the build tree as where it is installed:
/// share/vantrel beside the folder of the executable. Absent if it is not there. Needs the
/// QCoreApplication.
[[nodiscard]] std::optional<std::filesystem::path> bundledFile(const QString& name);

}  // namespace vantrel
