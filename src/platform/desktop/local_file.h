#pragma once

#include <filesystem>
#include <optional>
#include <string>

class QUrl;

namespace vantrel {

/// The path, of whatever bytes, of the file that a URL names, if that is one of this computer. Some
/// programs name the computer before the path.
[[nodiscard]] std::optional<std::filesystem::path> localFile(const QUrl& url);

/// The file that an argument of the program names: by its path, or by the URL of a local file.
/// What there is under the argument as it stands comes first.
[[nodiscard]] std::filesystem::path fileOfArgument(const std::string& argument);

}  // namespace vantrel
