#include "export/export_temporary_storage.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <QProcess>
#include <QUuid>
#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "support/ordinary_user.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

namespace fs = std::filesystem;
using testing::namesIn;
using testing::TemporaryFolder;
using testing::writeFile;

constexpr int kPatience = 60'000;

/// A process of its own with a session.
class Session {
 public:
  explicit Session(const QStringList& arguments, const QProcessEnvironment& environment =
                                                     QProcessEnvironment::systemEnvironment()) {
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(VANTREL_BIN_DIR "/export_storage_session"), arguments);
  }
  explicit Session(const fs::path& folder)
      : Session(QStringList{QString::fromStdString(folder.string())}) {}
  ~Session() { crash(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// The session folder; waits for it to be there.
  fs::path directory() {
    while (m_directory.empty()) {
      if (!m_process.canReadLine() && !m_process.waitForReadyRead(kPatience)) return {};
      if (m_process.canReadLine()) m_directory = m_process.readLine().trimmed().toStdString();
    }
    return m_directory;
  }
  void quit() {
    m_process.write("quit\n");
    EXPECT_EQ(exitCode(), 0);
  }
  void crash() {
    m_process.kill();
    m_process.waitForFinished(kPatience);
  }
  int exitCode() {
    EXPECT_TRUE(m_process.waitForFinished(kPatience));
    return m_process.exitCode();
  }

 private:
  QProcess m_process;
  fs::path m_directory;
};

TEST(ExportTemporaryStorage, MakesItsFoldersForTheUserAlone) {
  const TemporaryFolder folder;
  const ExportTemporaryStorage storage(folder.path());
  EXPECT_EQ(storage.directory().parent_path(), folder / "Vantrel-Exports");
  EXPECT_EQ(testing::modeOf(folder / "Vantrel-Exports"), 0700U);
  EXPECT_EQ(testing::modeOf(storage.directory()), 0700U);
  EXPECT_EQ(namesIn(storage.directory()), std::vector<std::string>{"session.lock"});
  for (const fs::path& lock :
       {folder / "Vantrel-Exports/recovery.lock", storage.directory() / "session.lock"}) {
    EXPECT_EQ(testing::modeOf(lock), 0600U) << lock;
    EXPECT_EQ(fs::file_size(lock), 0U) << lock;
  }
}

TEST(ExportTemporaryStorage, IsNamedByAnIdentity) {
  const TemporaryFolder folder;
  const ExportTemporaryStorage storage(folder.path());
  const std::string name = storage.directory().filename().string();
  EXPECT_EQ(name.size(), 36U);
  EXPECT_FALSE(QUuid::fromString(QString::fromStdString(name)).isNull()) << name;
  EXPECT_EQ(QString::fromStdString(name), QString::fromStdString(name).toUpper());
}

TEST(ExportTemporaryStorage, NamesExportsAnew) {
  const TemporaryFolder folder;
  ExportTemporaryStorage storage(folder.path());
  const fs::path first = storage.newExportPath(QStringLiteral("png"));
  const fs::path second = storage.newExportPath(QStringLiteral("jpg"));
  EXPECT_NE(first.stem(), second.stem());
  EXPECT_EQ(first.parent_path(), storage.directory());
  EXPECT_EQ(first.extension(), ".png");
  EXPECT_EQ(second.extension(), ".jpg");
  const std::string stem = first.stem().string();
  EXPECT_EQ(stem.substr(0, 8), "Vantrel-");
  EXPECT_FALSE(QUuid::fromString(QString::fromStdString(stem.substr(8))).isNull()) << stem;
  EXPECT_FALSE(fs::exists(first));
}

TEST(ExportTemporaryStorage, HoldsItsLockAndNoOther) {
  const TemporaryFolder folder;
  fs::path session;
  {
    const ExportTemporaryStorage storage(folder.path());
    session = storage.directory();
    FileLock sessionLock(session / "session.lock", FileLock::IfMissing::Fail);
    EXPECT_FALSE(sessionLock.tryLock());
    FileLock recovery(folder / "Vantrel-Exports/recovery.lock", FileLock::IfMissing::Fail);
    EXPECT_TRUE(recovery.tryLock());
  }
  FileLock sessionLock(session / "session.lock", FileLock::IfMissing::Fail);
  EXPECT_TRUE(sessionLock.tryLock());
}

TEST(ExportTemporaryStorage, MakesAFolderThatWasDeletedAnew) {
  const TemporaryFolder folder;
  ExportTemporaryStorage storage(folder.path());
  const fs::path directory = storage.directory();
  for (const fs::path& deleted : {directory / "session.lock", directory, directory.parent_path()}) {
    fs::remove_all(deleted);
    writeFile(storage.newExportPath(QStringLiteral("png")), "picture");
    EXPECT_EQ(storage.directory(), directory);
    EXPECT_EQ(testing::modeOf(directory.parent_path()), 0700U);
    EXPECT_EQ(testing::modeOf(directory), 0700U);
    EXPECT_EQ(testing::modeOf(directory / "session.lock"), 0600U);
    FileLock lock(directory / "session.lock", FileLock::IfMissing::Fail);
    EXPECT_FALSE(lock.tryLock());
  }
}

TEST(ExportTemporaryStorage, LivesOnForOthersAfterItsFolderWasDeleted) {
  const TemporaryFolder folder;
  ExportTemporaryStorage storage(folder.path());
  fs::remove_all(folder / "Vantrel-Exports");
  const fs::path file = storage.newExportPath(QStringLiteral("png"));
  writeFile(file, "picture");
  Session other(folder.path());
  EXPECT_FALSE(other.directory().empty());
  EXPECT_EQ(testing::readFile(file), "picture");
}

TEST(ExportTemporaryStorage, WaitsForARecoveryBeforeItMakesItsFolderAnew) {
  const TemporaryFolder folder;
  ExportTemporaryStorage storage(folder.path());
  fs::remove_all(storage.directory());
  auto recovery = std::make_unique<FileLock>(folder / "Vantrel-Exports/recovery.lock",
                                             FileLock::IfMissing::Fail);
  ASSERT_TRUE(recovery->lock());
  std::thread waiting([&] { std::ignore = storage.newExportPath(QStringLiteral("png")); });
  // It cannot get further than to the lock, however long one looks.
  for (int look = 0; look < 1000; ++look)
    EXPECT_FALSE(fs::exists(storage.directory()));
  recovery.reset();
  waiting.join();
  EXPECT_TRUE(fs::exists(storage.directory() / "session.lock"));
}

TEST(ExportTemporaryStorage, LeavesALockThatIsThereAlone) {
  const TemporaryFolder folder;
  ExportTemporaryStorage storage(folder.path());
  FileLock lock(storage.directory() / "session.lock", FileLock::IfMissing::Fail);
  std::ignore = storage.newExportPath(QStringLiteral("png"));
  EXPECT_TRUE(lock.isAt(storage.directory() / "session.lock"));
  EXPECT_FALSE(lock.tryLock());
}

TEST(ExportTemporaryStorage, MakesNothingAnewInAFolderOfAnotherUser) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can make another user's folder";
  const TemporaryFolder folder;
  ExportTemporaryStorage storage(folder.path());
  fs::remove_all(folder / "Vantrel-Exports");
  fs::create_directory(folder / "Vantrel-Exports");
  ASSERT_EQ(::chown((folder / "Vantrel-Exports").c_str(), testing::OrdinaryUser::kNobody,
                    testing::OrdinaryUser::kNobody),
            0);
  const fs::path file = storage.newExportPath(QStringLiteral("png"));
  EXPECT_EQ(file.parent_path(), storage.directory());
  EXPECT_TRUE(namesIn(folder / "Vantrel-Exports").empty());
}

TEST(ExportTemporaryStorage, RemovesADeadSessionWithAllItHolds) {
  const TemporaryFolder folder;
  Session dead(folder.path());
  const fs::path left = dead.directory();
  writeFile(left / "Vantrel-1.png", "picture");
  fs::create_directories(left / "Vantrel-2");
  writeFile(left / "Vantrel-2/Export.mov", "movie");
  dead.crash();
  ASSERT_TRUE(fs::exists(left / "Vantrel-1.png"));

  const ExportTemporaryStorage storage(folder.path());
  EXPECT_FALSE(fs::exists(left));
  EXPECT_TRUE(fs::exists(storage.directory()));
}

TEST(ExportTemporaryStorage, LeavesAFolderWithoutALockFile) {
  const TemporaryFolder folder;
  fs::create_directories(folder / "Vantrel-Exports/stranger");
  writeFile(folder / "Vantrel-Exports/stranger/precious", "mine");
  writeFile(folder / "Vantrel-Exports/file", "mine");
  const ExportTemporaryStorage storage(folder.path());
  EXPECT_EQ(testing::readFile(folder / "Vantrel-Exports/stranger/precious"), "mine");
  EXPECT_TRUE(fs::exists(folder / "Vantrel-Exports/file"));
}

TEST(ExportTemporaryStorage, RemovesOfALinkTheLinkAlone) {
  const TemporaryFolder folder;
  fs::create_directories(folder / "elsewhere");
  writeFile(folder / "elsewhere/session.lock", "");
  writeFile(folder / "elsewhere/precious", "mine");
  fs::create_directories(folder / "Vantrel-Exports");
  fs::create_directory_symlink(folder / "elsewhere", folder / "Vantrel-Exports/link");
  const ExportTemporaryStorage storage(folder.path());
  EXPECT_EQ(testing::readFile(folder / "elsewhere/precious"), "mine");
}

TEST(ExportTemporaryStorage, KeepsALivingSessionWhileAThirdRecovers) {
  const TemporaryFolder folder;
  Session dead(folder.path());
  Session living(folder.path());
  const fs::path deadFolder = dead.directory();
  const fs::path livingFolder = living.directory();
  writeFile(livingFolder / "Vantrel-1.png", "picture");
  dead.crash();
  Session third(folder.path());
  const fs::path thirdFolder = third.directory();
  EXPECT_FALSE(fs::exists(deadFolder));
  EXPECT_EQ(testing::readFile(livingFolder / "Vantrel-1.png"), "picture");
  EXPECT_TRUE(fs::exists(thirdFolder / "session.lock"));
}

TEST(ExportTemporaryStorage, RemovesItsFolderWhenTheApplicationQuits) {
  const TemporaryFolder folder;
  Session session(folder.path());
  const fs::path directory = session.directory();
  writeFile(directory / "Vantrel-1.png", "picture");
  session.quit();
  EXPECT_EQ(namesIn(folder / "Vantrel-Exports"), std::vector<std::string>{"recovery.lock"});
}

TEST(ExportTemporaryStorage, OfProcessesThatStartAtOnceAllStand) {
  const TemporaryFolder folder;
  for (int round = 0; round < 25; ++round) {
    std::array<std::unique_ptr<Session>, 4> sessions;
    for (auto& session : sessions)
      session = std::make_unique<Session>(folder.path());
    std::vector<fs::path> folders;
    for (auto& session : sessions)
      folders.push_back(session->directory());
    std::sort(folders.begin(), folders.end());
    EXPECT_EQ(std::unique(folders.begin(), folders.end()), folders.end());
    for (const fs::path& one : folders)
      ASSERT_TRUE(fs::exists(one / "session.lock")) << one;
  }
}

TEST(ExportTemporaryStorage, NeverTakesASessionThatIsBeingMadeForADeadOne) {
  const TemporaryFolder folder;
  const QStringList arguments{QString::fromStdString(folder.path().string()),
                              QStringLiteral("400")};
  Session first(arguments);
  Session second(arguments);
  Session third(arguments);
  EXPECT_EQ(first.exitCode(), 0);
  EXPECT_EQ(second.exitCode(), 0);
  EXPECT_EQ(third.exitCode(), 0);
}

TEST(ExportTemporaryStorage, WaitsForARecoveryThatIsUnderWay) {
  const TemporaryFolder folder;
  fs::create_directories(folder / "Vantrel-Exports");
  auto recovery = std::make_unique<FileLock>(folder / "Vantrel-Exports/recovery.lock",
                                             FileLock::IfMissing::Create);
  ASSERT_TRUE(recovery->lock());
  Session session(folder.path());
  // It cannot get further than to the lock, however long one looks.
  for (int look = 0; look < 1000; ++look) {
    ASSERT_EQ(namesIn(folder / "Vantrel-Exports"), std::vector<std::string>{"recovery.lock"});
  }
  recovery.reset();
  EXPECT_TRUE(fs::exists(session.directory()));
}

TEST(ExportTemporaryStorage, IsMadeAlsoWhereNoFolderCanBe) {
  const TemporaryFolder folder;
  writeFile(folder / "file", "");
  const ExportTemporaryStorage storage(folder / "file");
  EXPECT_EQ(storage.directory().parent_path(), folder / "file/Vantrel-Exports");
  EXPECT_FALSE(fs::exists(storage.directory()));
}

TEST(ExportTemporaryStorage, IsMadeAlsoWhereItMayNotWrite) {
  const TemporaryFolder folder;
  const testing::OrdinaryUser user;
  const ExportTemporaryStorage storage("/proc");
  EXPECT_FALSE(fs::exists(storage.directory()));
}

TEST(ExportTemporaryStorage, DoesNotHandItsLockToProgramsStartedFromHere) {
  const TemporaryFolder folder;
  const ExportTemporaryStorage storage(folder.path());
  int found = 0;
  for (int descriptor = 3; descriptor < 256; ++descriptor) {
    std::error_code error;
    const fs::path target = fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor), error);
    if (error || target.filename() != "session.lock") continue;
    ++found;
    EXPECT_TRUE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
  }
  if (!fs::exists("/proc/self/fd")) GTEST_SKIP() << "no list of open files";
  EXPECT_EQ(found, 1);
}

QProcessEnvironment temporaryFolderIs(const fs::path& folder) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("TMPDIR"), QString::fromStdString(folder.string()));
  return environment;
}

TEST(ExportTemporaryStorage, OfTheProcessIsInTheTemporaryFolderOfTheSystem) {
  const TemporaryFolder folder;
  Session session({QStringLiteral("shared")}, temporaryFolderIs(folder.path()));
  EXPECT_EQ(session.directory().parent_path(), folder / "Vantrel-Exports");
  EXPECT_TRUE(fs::exists(session.directory() / "session.lock"));
  session.quit();
  EXPECT_FALSE(fs::exists(session.directory()));
}

TEST(ExportTemporaryStorage, OfTheProcessKeepsApartFromAnotherUsers) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can make another user's folder";
  const TemporaryFolder folder;
  fs::create_directory(folder / "Vantrel-Exports");
  ASSERT_EQ(::chown((folder / "Vantrel-Exports").c_str(), testing::OrdinaryUser::kNobody,
                    testing::OrdinaryUser::kNobody),
            0);
  Session session({QStringLiteral("shared")}, temporaryFolderIs(folder.path()));
  EXPECT_EQ(session.directory().parent_path(), folder / "vantrel-0/Vantrel-Exports");
  EXPECT_TRUE(fs::exists(session.directory() / "session.lock"));
  EXPECT_TRUE(namesIn(folder / "Vantrel-Exports").empty());
}

}  // namespace
}  // namespace vantrel
