#pragma once

#include <filesystem>

#include "platform/desktop/file_destination.h"

namespace vantrel {

/// A new folder of this process alone, "Vantrel-" and a UUID beside a destination, in which the
/// file for it is made. The destructor removes it with all it holds, and ignores errors of that.
class WorkingFolder final {
 public:
  /// Makes the destination's own folder too where it is missing. Throws std::system_error.
  explicit WorkingFolder(const FileDestination& destination);
  ~WorkingFolder();
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

}  // namespace vantrel
