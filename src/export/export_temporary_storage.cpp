#include "export/export_temporary_storage.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <string>
#include <system_error>
#include <vector>

#include "export/unique_name.h"

namespace vantrel {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRootName = "Vantrel-Exports";
constexpr const char* kRecoveryLockName = "recovery.lock";
constexpr const char* kSessionLockName = "session.lock";

/// Makes a folder that only the user may enter, with the folders above it. Exports are private, and
/// the system's temporary folder is everybody's.
void createPrivateFolder(const fs::path& folder) {
  std::error_code ignored;
  fs::create_directories(folder.parent_path(), ignored);
  ::mkdir(folder.c_str(), S_IRWXU);
}

/// Whether `folder` is a real folder of this user.
bool isOwn(const fs::path& folder) {
  struct stat status {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid();
}

std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    entries.push_back(entry->path());
  }
  return entries;
}

/// Removes the sessions whose owner is dead. What has no lock file is not known to be ours, and
/// stays.
void removeDeadSessions(const fs::path& root) {
  for (const fs::path& entry : entriesOf(root)) {
    FileLock lock(entry / kSessionLockName, FileLock::IfMissing::Fail);
    if (!lock.isOpen() || !lock.tryLock()) continue;
    std::error_code ignored;
    fs::remove_all(entry, ignored);
  }
}

/// Waits for the lock that is held from before a session folder exists until it is locked. Without
/// it another process that starts could see the folder in between, and take it for a dead one.
FileLock lockForRecovery(const fs::path& root) {
  const fs::path path = root / kRecoveryLockName;
  for (;;) {
    FileLock lock(path, FileLock::IfMissing::Create);
    // Deleted while this process waited for it, it would keep nobody out.
    if (!lock.lock() || lock.isAt(path)) return lock;
  }
}

}  // namespace

ExportTemporaryStorage& ExportTemporaryStorage::shared() {
  // Never destroyed: the lock goes with the process, after everything that could still write.
  static auto* const instance = new ExportTemporaryStorage(userTemporaryDirectory());
  return *instance;
}

std::filesystem::path ExportTemporaryStorage::userTemporaryDirectory() {
  std::error_code error;
  fs::path common = fs::temp_directory_path(error);
  if (error) common = "/tmp";
  // Made before it is looked at, so that nobody can put theirs in between.
  createPrivateFolder(common / kRootName);
  return isOwn(common / kRootName) ? common : common / ("vantrel-" + std::to_string(::geteuid()));
}

ExportTemporaryStorage::ExportTemporaryStorage(const fs::path& temporaryDirectory) {
  const fs::path root = temporaryDirectory / kRootName;
  createPrivateFolder(root);
  const FileLock recoveryLock = lockForRecovery(root);
  removeDeadSessions(root);
  m_directory = root / uniqueId();
  makeSession();

  if (const auto* application = QCoreApplication::instance()) {
    connect(application, &QCoreApplication::aboutToQuit, this, [folder = m_directory] {
      std::error_code ignored;
      fs::remove_all(folder, ignored);
    });
  }
}

void ExportTemporaryStorage::makeSession() {
  createPrivateFolder(m_directory);
  m_sessionLock = FileLock(m_directory / kSessionLockName, FileLock::IfMissing::Create);
  m_sessionLock.tryLock();
}

void ExportTemporaryStorage::restoreSession() {
  const fs::path root = m_directory.parent_path();
  createPrivateFolder(root);
  // Once it was deleted, anybody could put theirs in its place.
  if (!isOwn(root)) return;
  const FileLock recoveryLock = lockForRecovery(root);
  makeSession();
}

std::filesystem::path ExportTemporaryStorage::newExportPath(const QString& extension) {
  if (!m_sessionLock.isAt(m_directory / kSessionLockName)) restoreSession();
  return m_directory / (uniqueName() + "." + extension.toStdString());
}

}  // namespace vantrel
