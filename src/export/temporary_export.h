#pragma once

#include <filesystem>

namespace vantrel {

/// Owns one file in the session folder, there or still to be written; whoever holds it last lets it
/// go, and the file with it. Errors of the removal are ignored: the session folder goes later.
class TemporaryExport final {
 public:
  /// Owns nothing.
  TemporaryExport() = default;
  explicit TemporaryExport(std::filesystem::path path);
  TemporaryExport(const TemporaryExport&) = delete;
  TemporaryExport& operator=(const TemporaryExport&) = delete;
  /// Leaves `other` owning nothing.
  TemporaryExport(TemporaryExport&& other) noexcept;
  TemporaryExport& operator=(TemporaryExport&& other) noexcept;
  ~TemporaryExport();

  /// Empty if nothing is owned.
  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

  /// Deletes the file now and owns nothing.
  void remove() noexcept;

 private:
  std::filesystem::path m_path;
};

}  // namespace vantrel
