#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <system_error>

namespace vantrel {

/// What was being done to a file when it failed.
enum class FileAction { Open, Read, Save };

/// What is wrong with a file beyond what the system has a number for.
enum class FileFault {
  /// A pipe, a socket or a device.
  NotAFile = 1
};

[[nodiscard]] std::error_code make_error_code(FileFault fault);

/// The last part of `path` for people to read, whatever bytes it has: what is no UTF-8, no
/// printable character and no joiner of such becomes U+FFFD. All of `path` if it ends in a slash.
[[nodiscard]] QString displayName(const std::filesystem::path& path);

// All that is said of a failure is in UTF-8, and in the user's language where its words are in the
// catalogue. Any thread.

/// What happened, for a reason to be added: "“photo.jpg” could not be opened".
[[nodiscard]] std::string fileFailure(const std::filesystem::path& path, FileAction action);
/// With a reason, which may be in the catalogue under "Failure".
[[nodiscard]] std::string fileFailure(const std::filesystem::path& path, FileAction action,
                                      const std::string& reason);

/// An error whose what() is the line that the user reads, for example "“photo.jpg” could not be
/// opened: No such file or directory". The system's reason is in its own words.
[[nodiscard]] std::system_error fileError(const std::filesystem::path& path, FileAction action,
                                          std::error_code code);
/// The same for the present value of errno.
[[nodiscard]] std::system_error fileError(const std::filesystem::path& path, FileAction action);

}  // namespace vantrel

template <>
struct std::is_error_code_enum<vantrel::FileFault> : std::true_type {};
