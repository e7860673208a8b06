#pragma once

#include <QObject>
#include <filesystem>

namespace vantrel {

/// The session folder of this process for exports that wait for their review, below
/// "Vantrel-Exports" in the system's temporary folder. Liveness is an exclusive lock on
/// "session.lock" in it, which the system releases with the process; what a dead process left is
/// removed by the next one. Main thread, but `directory` may be read from any.
class ExportTemporaryStorage final : public QObject {
 public:
  /// The instance of the process, made on first use; a QCoreApplication must exist.
  [[nodiscard]] static ExportTemporaryStorage& shared();

  /// A session below `temporaryDirectory`. Never throws: what fails is left out.
  explicit ExportTemporaryStorage(const std::filesystem::path& temporaryDirectory);
  ~ExportTemporaryStorage() override;

  /// The session folder. It may be missing if it could not be made.
  [[nodiscard]] const std::filesystem::path& directory() const { return m_directory; }

  /// A new name in the session folder: "Vantrel-", a UUID, a point and the extension.
  [[nodiscard]] std::filesystem::path newExportPath(const QString& extension) const;

 private:
  std::filesystem::path m_directory;
  int m_lockDescriptor = -1;
};

}  // namespace vantrel
