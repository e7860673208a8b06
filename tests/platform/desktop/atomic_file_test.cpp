#include "platform/desktop/atomic_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <optional>
#include <system_error>

#include "base/cancelled.h"
#include "platform/desktop/file_descriptor.h"
#include "support/ordinary_user.h"
#include "support/temporary_folder.h"
#include "support/write_failures.h"

namespace vantrel {
namespace {

using testing::modeOf;
using testing::namesIn;
using testing::readFile;
using testing::TemporaryFolder;
using testing::writeFile;
using Names = std::vector<std::string>;

/// Replaces `destination` as a whole by `bytes`.
void save(const std::filesystem::path& destination, const std::string& bytes) {
  AtomicFile file(destination);
  writeFile(file.temporaryPath(), bytes);
  file.commit();
}

/// The line of the error of `action`, and "" if there is none.
template <class Action>
std::string errorOf(Action action) {
  try {
    action();
    return "";
  } catch (const std::system_error& error) {
    return error.what();
  }
}

class ProcessMask {
 public:
  explicit ProcessMask(mode_t mask) : m_before(::umask(mask)) {}
  ~ProcessMask() { ::umask(m_before); }
  ProcessMask(const ProcessMask&) = delete;
  ProcessMask& operator=(const ProcessMask&) = delete;

 private:
  mode_t m_before;
};

TEST(AtomicFile, AppearsOnlyWithTheCommit) {
  const TemporaryFolder folder;
  AtomicFile file(folder / "out.png");
  writeFile(file.temporaryPath(), "new");
  EXPECT_FALSE(std::filesystem::exists(folder / "out.png"));
  file.commit();
  EXPECT_EQ(readFile(folder / "out.png"), "new");
  EXPECT_EQ(namesIn(folder.path()), Names{"out.png"});
}

TEST(AtomicFile, LeavesNothingWithoutACommit) {
  const TemporaryFolder folder;
  {
    const AtomicFile file(folder / "out.png");
    writeFile(file.temporaryPath(), "half");
  }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(AtomicFile, LeavesTheOldFileWithoutACommit) {
  const TemporaryFolder folder;
  writeFile(folder / "out.png", "old");
  {
    const AtomicFile file(folder / "out.png");
    writeFile(file.temporaryPath(), "half");
  }
  EXPECT_EQ(readFile(folder / "out.png"), "old");
  EXPECT_EQ(namesIn(folder.path()), Names{"out.png"});
}

TEST(AtomicFile, WritesBesideItsDestination) {
  const TemporaryFolder folder;
  const AtomicFile file(folder / "out.png");
  EXPECT_EQ(file.temporaryPath().parent_path(), folder.path());
}

TEST(AtomicFile, KeepsThePermissionsOfTheFileItReplaces) {
  const TemporaryFolder folder;
  for (const mode_t mode : {0600, 0640, 0666, 0755}) {
    writeFile(folder / "out.png", "old");
    ::chmod((folder / "out.png").c_str(), mode);
    save(folder / "out.png", "new");
    EXPECT_EQ(modeOf(folder / "out.png"), mode);
    EXPECT_EQ(readFile(folder / "out.png"), "new");
  }
}

TEST(AtomicFile, GivesANewFileThePermissionsOfTheProcess) {
  const TemporaryFolder folder;
  for (const mode_t mask : {0022, 0027, 0077, 0777}) {
    const ProcessMask processMask(mask);
    save(folder / "out.png", "new");
    EXPECT_EQ(modeOf(folder / "out.png"), 0666U & ~mask);
    std::filesystem::remove(folder / "out.png");
  }
}

TEST(AtomicFile, KeepsALinkAndReplacesItsTarget) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "far");
  writeFile(folder / "far/real.png", "old");
  std::filesystem::create_symlink("far/real.png", folder / "second");
  std::filesystem::create_symlink("second", folder / "first");
  save(folder / "first", "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "first"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "second"));
  EXPECT_EQ(readFile(folder / "far/real.png"), "new");
  EXPECT_EQ(namesIn(folder / "far"), Names{"real.png"});
}

TEST(AtomicFile, MakesTheMissingTargetOfALink) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(folder / "real.png", folder / "link.png");
  save(folder / "link.png", "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.png"));
  EXPECT_EQ(readFile(folder / "real.png"), "new");
}

TEST(AtomicFile, RefusesALinkToItself) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink("b.png", folder / "a.png");
  std::filesystem::create_symlink("a.png", folder / "b.png");
  EXPECT_EQ(errorOf([&] { AtomicFile file(folder / "a.png"); }),
            "“a.png” could not be saved: Too many levels of symbolic links");
}

TEST(AtomicFile, TakesTheLongestName) {
  const TemporaryFolder folder;
  const std::string name(255, 'n');
  save(folder / name, "new");
  EXPECT_EQ(namesIn(folder.path()), Names{name});
}

TEST(AtomicFile, TakesANameThatIsNoText) {
  const TemporaryFolder folder;
  const std::string name = "caf\xe9\xff.png";
  save(folder / name, "new");
  EXPECT_EQ(namesIn(folder.path()), Names{name});
}

TEST(AtomicFile, TakesANameWithoutAFolder) {
  const TemporaryFolder folder;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  save("out.png", "new");
  std::filesystem::current_path(before);
  EXPECT_EQ(namesIn(folder.path()), Names{"out.png"});
}

TEST(AtomicFile, RefusesAFolder) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "out.png");
  EXPECT_EQ(errorOf([&] { AtomicFile file(folder / "out.png"); }),
            "“out.png” could not be saved: Is a directory");
  EXPECT_EQ(errorOf([&] { AtomicFile file(folder / "new/"); }),
            "“" + (folder / "new/").string() + "” could not be saved: Is a directory");
}

TEST(AtomicFile, RefusesWhatIsNoFile) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(errorOf([&] { AtomicFile file(folder / "pipe"); }),
            "“pipe” could not be saved: Not a regular file");
  EXPECT_EQ(errorOf([] { AtomicFile file("/dev/null"); }),
            "“null” could not be saved: Not a regular file");
}

TEST(AtomicFile, RefusesAMissingFolder) {
  const TemporaryFolder folder;
  EXPECT_EQ(errorOf([&] { AtomicFile file(folder / "no/out.png"); }),
            "“out.png” could not be saved: No such file or directory");
}

TEST(AtomicFile, RefusesAFolderWithoutPermission) {
  const TemporaryFolder folder;
  writeFile(folder / "out.png", "old");
  ::chmod((folder / "out.png").c_str(), 0666);
  ::chmod(folder.path().c_str(), 0555);
  const testing::OrdinaryUser user;
  EXPECT_EQ(errorOf([&] { AtomicFile file(folder / "out.png"); }),
            "“out.png” could not be saved: Permission denied");
  EXPECT_EQ(readFile(folder / "out.png"), "old");
}

TEST(AtomicFile, RefusesAnOldFileThatIsProtected) {
  const TemporaryFolder folder;
  writeFile(folder / "out.png", "old");
  ::chmod((folder / "out.png").c_str(), 0444);
  ::chmod(folder.path().c_str(), 0777);
  const testing::OrdinaryUser user;
  EXPECT_EQ(errorOf([&] { AtomicFile file(folder / "out.png"); }),
            "“out.png” could not be saved: Permission denied");
  EXPECT_EQ(namesIn(folder.path()), Names{"out.png"});
}

TEST(AtomicFile, LeavesTheOldFileWhenTheRenamingFails) {
  const TemporaryFolder folder;
  {
    AtomicFile file(folder / "out.png");
    writeFile(file.temporaryPath(), "new");
    std::filesystem::create_directory(folder / "out.png");
    EXPECT_EQ(errorOf([&] { file.commit(); }), "“out.png” could not be saved: Is a directory");
  }
  EXPECT_EQ(namesIn(folder.path()), Names{"out.png"});
}

std::string manyBytes(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<char>((i * 2654435761U) >> 13);
  return bytes;
}

TEST(AtomicCopy, CopiesEveryByte) {
  const TemporaryFolder folder;
  for (const size_t size : {0, 1, (4 << 20) - 1, 4 << 20, 9'000'001}) {
    const std::string bytes = manyBytes(size);
    writeFile(folder / "in", bytes);
    atomicCopy(folder / "in", folder / "out");
    EXPECT_EQ(readFile(folder / "out"), bytes) << size;
  }
  EXPECT_EQ(namesIn(folder.path()), (Names{"in", "out"}));
}

TEST(AtomicCopy, ReachesAnotherFileSystem) {
  const std::filesystem::path memory = "/dev/shm";
  if (::access(memory.c_str(), W_OK) != 0) GTEST_SKIP() << "no second file system";
  const TemporaryFolder folder;
  const std::filesystem::path far = memory / folder.path().filename();
  writeFile(folder / "in", manyBytes(5'000'000));
  atomicCopy(folder / "in", far);
  EXPECT_EQ(readFile(far), readFile(folder / "in"));
  std::filesystem::remove(far);
}

TEST(AtomicCopy, CopiesAFileWhoseSizeTheSystemDoesNotTell) {
  const TemporaryFolder folder;
  atomicCopy("/proc/version", folder / "out");
  EXPECT_EQ(readFile(folder / "out"), readFile("/proc/version"));
}

TEST(AtomicCopy, TellsItsProgress) {
  const TemporaryFolder folder;
  writeFile(folder / "in", manyBytes(9'000'000));
  std::vector<int64_t> told;
  atomicCopy(folder / "in", folder / "out", {}, [&](int64_t copied) { told.push_back(copied); });
  ASSERT_GE(told.size(), 3U);
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  EXPECT_EQ(told.back(), 9'000'000);
}

TEST(AtomicCopy, StopsWhenCancelledAndLeavesTheOldFile) {
  const TemporaryFolder folder;
  writeFile(folder / "in", manyBytes(9'000'000));
  writeFile(folder / "out", "old");
  std::stop_source stop;
  EXPECT_THROW(atomicCopy(folder / "in", folder / "out", stop.get_token(),
                          [&](int64_t) { stop.request_stop(); }),
               Cancelled);
  EXPECT_EQ(readFile(folder / "out"), "old");
  EXPECT_EQ(namesIn(folder.path()), (Names{"in", "out"}));
}

TEST(AtomicCopy, HeedsARequestThatCameWithTheLastByte) {
  const TemporaryFolder folder;
  writeFile(folder / "in", "all");
  std::stop_source stop;
  EXPECT_THROW(atomicCopy(folder / "in", folder / "out", stop.get_token(),
                          [&](int64_t) { stop.request_stop(); }),
               Cancelled);
  EXPECT_EQ(namesIn(folder.path()), Names{"in"});
}

TEST(AtomicCopy, OntoItselfChangesNothing) {
  const TemporaryFolder folder;
  writeFile(folder / "in", "all");
  atomicCopy(folder / "in", folder / "in");
  EXPECT_EQ(readFile(folder / "in"), "all");
}

TEST(AtomicCopy, OfAMissingFileLeavesNothing) {
  const TemporaryFolder folder;
  EXPECT_EQ(errorOf([&] { atomicCopy(folder / "in", folder / "out"); }),
            "“in” could not be opened: No such file or directory");
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(AtomicCopy, ToAFullDiskLeavesTheOldFile) {
  const TemporaryFolder folder;
  writeFile(folder / "in", manyBytes(9'000'000));
  writeFile(folder / "out", "old");
  {
    const testing::FileSizeLimit limit(5'000'000);
    EXPECT_EQ(errorOf([&] { atomicCopy(folder / "in", folder / "out"); }),
              "“out” could not be saved: File too large");
  }
  EXPECT_EQ(readFile(folder / "out"), "old");
  EXPECT_EQ(namesIn(folder.path()), (Names{"in", "out"}));
}

}  // namespace
}  // namespace vantrel
