#pragma once

#include <QObject>
#include <QString>
#include <filesystem>

#include "platform/desktop/file_lock.h"

namespace vantrel {

/// The session folder of this process for exports that wait for their review, below
/// "Vantrel-Exports" in the temporary folder of the user. Liveness is an exclusive lock on
/// "session.lock" in it, which the system releases with the process; what a dead process left is
/// removed by the next one. When the application quits, the session folder goes with all it holds.
/// Main thread, but `directory` may be called from any.
class ExportTemporaryStorage final : public QObject {
 public:
  /// The instance of the process, made on first use; a QCoreApplication must exist.
  [[nodiscard]] static ExportTemporaryStorage& shared();

  /// Where sessions of this user live: the system's temporary folder, or a folder in it if another
  /// user's sessions are there already.
  [[nodiscard]] static std::filesystem::path userTemporaryDirectory();

  /// A session below `temporaryDirectory`. Never throws: what fails is left out.
  explicit ExportTemporaryStorage(const std::filesystem::path& temporaryDirectory);

  /// The session folder. It may be missing if it could not be made.
  [[nodiscard]] const std::filesystem::path& directory() const { return m_directory; }

  /// A new name in the session folder: "Vantrel-", a UUID, a point and the extension. Something
  /// else may have deleted folder or lock, as cleaners of temporary files do; they are made anew.
  [[nodiscard]] std::filesystem::path newExportPath(const QString& extension);

 private:
  /// Makes the folder and takes its lock; only while the recovery lock is held.
  void makeSession();
  void restoreSession();

  std::filesystem::path m_directory;
  /// Held as long as this object lives.
  FileLock m_sessionLock;
};

}  // namespace vantrel
