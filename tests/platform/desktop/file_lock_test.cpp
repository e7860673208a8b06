#include "platform/desktop/file_lock.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using testing::TemporaryFolder;

TEST(FileLock, MakesItsFileForTheOwnerAlone) {
  const TemporaryFolder folder;
  const FileLock lock(folder / "lock", FileLock::IfMissing::Create);
  EXPECT_TRUE(lock.isOpen());
  EXPECT_EQ(testing::modeOf(folder / "lock"), 0600U);
}

TEST(FileLock, IsNotOpenWithoutAFile) {
  const TemporaryFolder folder;
  FileLock lock(folder / "lock", FileLock::IfMissing::Fail);
  EXPECT_FALSE(lock.isOpen());
  EXPECT_FALSE(lock.tryLock());
  EXPECT_FALSE(lock.lock());
  EXPECT_TRUE(testing::namesIn(folder.path()).empty());
  EXPECT_FALSE(FileLock().isOpen());
}

TEST(FileLock, ExcludesAnotherUntilItGoes) {
  const TemporaryFolder folder;
  FileLock second(folder / "lock", FileLock::IfMissing::Create);
  {
    FileLock first(folder / "lock", FileLock::IfMissing::Create);
    EXPECT_TRUE(first.tryLock());
    EXPECT_FALSE(second.tryLock());
  }
  EXPECT_TRUE(second.tryLock());
}

TEST(FileLock, MovesWithItsHold) {
  const TemporaryFolder folder;
  FileLock second(folder / "lock", FileLock::IfMissing::Create);
  FileLock kept;
  {
    FileLock first(folder / "lock", FileLock::IfMissing::Create);
    ASSERT_TRUE(first.lock());
    kept = std::move(first);
  }
  EXPECT_FALSE(second.tryLock());
}

TEST(FileLock, KnowsWhetherItsFileWasDeleted) {
  const TemporaryFolder folder;
  const FileLock lock(folder / "lock", FileLock::IfMissing::Create);
  EXPECT_TRUE(lock.isAt(folder / "lock"));
  std::filesystem::remove(folder / "lock");
  EXPECT_FALSE(lock.isAt(folder / "lock"));
  const FileLock other(folder / "lock", FileLock::IfMissing::Create);
  EXPECT_FALSE(lock.isAt(folder / "lock")) << "another file of that name";
  EXPECT_TRUE(other.isAt(folder / "lock"));
  EXPECT_FALSE(FileLock().isAt(folder / "lock"));
}

TEST(FileLock, WaitsForItsTurn) {
  const TemporaryFolder folder;
  auto first = std::make_unique<FileLock>(folder / "lock", FileLock::IfMissing::Create);
  ASSERT_TRUE(first->lock());
  bool firstIsDone = false;
  std::jthread waiting([&] {
    FileLock second(folder / "lock", FileLock::IfMissing::Create);
    EXPECT_TRUE(second.lock());
    EXPECT_TRUE(firstIsDone);
  });
  firstIsDone = true;
  first.reset();
}

TEST(FileLock, IsNotInheritedByAProgramStartedFromHere) {
  const TemporaryFolder folder;
  auto first = std::make_unique<FileLock>(folder / "lock", FileLock::IfMissing::Create);
  ASSERT_TRUE(first->lock());
  const pid_t child = ::fork();
  if (child == 0) {
    ::execlp("sleep", "sleep", "1000", nullptr);
    ::_exit(127);
  }
  ASSERT_GT(child, 0);
  first.reset();
  // The child holds a copy until its exec, which closes it.
  FileLock second(folder / "lock", FileLock::IfMissing::Create);
  EXPECT_TRUE(second.lock());
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
}

}  // namespace
}  // namespace vantrel
