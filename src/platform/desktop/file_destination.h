#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>

namespace vantrel {

/// The place that the user named for a file, which is made whole somewhere else and put there in
/// one step. A destination that is a symbolic link stays one, and the file it points to is
/// replaced.
class FileDestination final {
 public:
  /// `name` stands for the file in messages, if it is to be known by another than `path`. Throws
  /// std::system_error when the old file may not be replaced, or when what is there is no regular
  /// file.
  explicit FileDestination(const std::filesystem::path& path,
                           const std::filesystem::path& name = {});

  /// For messages.
  [[nodiscard]] const std::filesystem::path& name() const { return m_name; }
  /// With all links followed.
  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  /// The folder that holds it; it may be missing.
  [[nodiscard]] std::filesystem::path folder() const;
  /// Permissions of the file to replace; absent if there is none yet.
  [[nodiscard]] std::optional<mode_t> oldPermissions() const { return m_oldPermissions; }

  /// Gives `file`, which must lie on the same file system, these permissions (absent: those it
  /// has), flushes it to disk and renames it to the destination. Throws std::system_error; the old
  /// file then stands untouched.
  void take(const std::filesystem::path& file, std::optional<mode_t> permissions) const;

 private:
  std::filesystem::path m_name, m_path;
  std::optional<mode_t> m_oldPermissions;
};

}  // namespace vantrel
