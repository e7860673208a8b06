#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtGlobal>

#include "support/image_makers.h"
#include "support/temporary_folder.h"
#include "tools/crop_once_process.h"

namespace vantrel {
namespace {

using testing::cropOnce;
using testing::CropOnceProcess;
using testing::CropOnceResult;
using testing::namesIn;
using testing::readFile;
using testing::TemporaryFolder;
using testing::writeFile;
using Names = std::vector<std::string>;

constexpr const char* kUnsupported = "Open a PNG, JPEG, HEIC, or TIFF image.\n";
constexpr const char* kInvalidCrop =
    "The crop must stay inside the image and contain at least one pixel.\n";
constexpr const char* kEncodingFailed = "The cropped image could not be exported.\n";

/// Noise, which no encoder makes small.
void savePng(const std::filesystem::path& path, uint32_t width = 40, uint32_t height = 30) {
  testing::PngSpec spec;
  spec.width = width;
  spec.height = height;
  spec.sample = [](uint32_t x, uint32_t y, int channel) {
    uint32_t noise =
        (x * 73856093U) ^ (y * 19349663U) ^ (static_cast<uint32_t>(channel) * 83492791U);
    noise = (noise ^ (noise >> 13)) * 1274126177U;
    return static_cast<uint16_t>((noise >> 16) & 0xff);
  };
  testing::saveBytes(path, testing::makePng(spec));
}

/// A failed run says its one line and nothing else.
void expectLine(const CropOnceResult& result, const std::string& line) {
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, line);
}

/// A folder with a source that cannot be cropped and an old file in the place of the result, which
/// both must be there unchanged in the end.
class CropOnceBadSource : public ::testing::Test {
 protected:
  void SetUp() override { writeFile(folder / "out.png", "old"); }
  void TearDown() override {
    EXPECT_TRUE(readFile(folder / "out.png") == "old");
    EXPECT_EQ(namesIn(folder.path()), names);
  }
  /// Crops the file with this name in the folder.
  CropOnceResult crop(const std::string& name) {
    names = namesIn(folder.path());
    return cropOnce({folder / name, folder / "out.png"});
  }

  TemporaryFolder folder;
  Names names;
};

TEST_F(CropOnceBadSource, Missing) {
  expectLine(crop("photo.jpg"), "“photo.jpg” could not be opened: No such file or directory\n");
}

TEST_F(CropOnceBadSource, Directory) {
  std::filesystem::create_directory(folder / "album.png");
  expectLine(crop("album.png"), "“album.png” could not be opened: Is a directory\n");
}

TEST_F(CropOnceBadSource, Pipe) {
  ASSERT_EQ(::mkfifo((folder / "pipe.png").c_str(), 0600), 0);
  expectLine(crop("pipe.png"), "“pipe.png” could not be opened: Not a regular file\n");
}

TEST_F(CropOnceBadSource, Device) {
  expectLine(crop("/dev/zero"), "“zero” could not be opened: Not a regular file\n");
}

TEST_F(CropOnceBadSource, DanglingLink) {
  std::filesystem::create_symlink("nowhere", folder / "link.png");
  expectLine(crop("link.png"), "“link.png” could not be opened: No such file or directory\n");
}

TEST_F(CropOnceBadSource, Empty) {
  writeFile(folder / "empty.png", "");
  expectLine(crop("empty.png"), kUnsupported);
  writeFile(folder / "empty", "");
  expectLine(crop("empty"),
             "“empty” could not be opened: Invalid data found when processing input\n");
}

TEST_F(CropOnceBadSource, Text) {
  writeFile(folder / "notes.txt", "some words");
  expectLine(crop("notes.txt"),
             "“notes.txt” could not be opened: Invalid data found when processing input\n");
  writeFile(folder / "notes.png", "some words");
  expectLine(crop("notes.png"), kUnsupported);
}

TEST_F(CropOnceBadSource, Gif) {
  writeFile(folder / "moving.gif",
            std::string("GIF89a\1\0\1\0\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 27));
  expectLine(crop("moving.gif"), kUnsupported);
}

TEST_F(CropOnceBadSource, Damaged) {
  savePng(folder / "whole.png");
  const std::string bytes = readFile(folder / "whole.png");
  writeFile(folder / "half.png", bytes.substr(0, bytes.size() / 2));
  expectLine(crop("half.png"), "This image could not be read.\n");
}

class CropOnceIllegalCrop : public ::testing::TestWithParam<CropOnceProcess::Arguments> {};

TEST_P(CropOnceIllegalCrop, IsRefusedAsTyped) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  CropOnceProcess::Arguments arguments{folder / "in.png", folder / "out.png"};
  arguments.insert(arguments.end(), GetParam().begin(), GetParam().end());
  expectLine(cropOnce(arguments), kInvalidCrop);
  EXPECT_EQ(namesIn(folder.path()), Names{"in.png"});
}

constexpr const char* kLargest = "9223372036854775807";
constexpr const char* kSmallest = "-9223372036854775808";
INSTANTIATE_TEST_SUITE_P(
    Margins, CropOnceIllegalCrop,
    ::testing::Values(CropOnceProcess::Arguments{"--left", "-1"},
                      CropOnceProcess::Arguments{"--left", "40"},
                      CropOnceProcess::Arguments{"--top", "30"},
                      CropOnceProcess::Arguments{"--left", "20", "--right", "20"},
                      CropOnceProcess::Arguments{"--top", "-5", "--bottom", "10"},
                      CropOnceProcess::Arguments{"--left", kLargest, "--right", kLargest},
                      CropOnceProcess::Arguments{"--top", kSmallest, "--bottom", kSmallest}));

/// A copy of the program that an ordinary user may start, wherever it was built.
std::filesystem::path programIn(const TemporaryFolder& folder) {
  std::filesystem::copy_file(VANTREL_BIN_DIR "/crop-once", folder / "crop-once");
  std::filesystem::permissions(folder / "crop-once", std::filesystem::perms(0755));
  return folder / "crop-once";
}

CropOnceResult cropAsOrdinaryUser(const CropOnceProcess::Arguments& arguments) {
  const TemporaryFolder own;
  CropOnceProcess process;
  process.program = programIn(own);
  process.prepare = testing::becomeOrdinaryUser;
  process.start(arguments);
  return process.finish();
}

TEST(CropOnceFailure, SourceWithoutPermission) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  ::chmod((folder / "in.png").c_str(), 0);
  ::chmod(folder.path().c_str(), 0777);
  expectLine(cropAsOrdinaryUser({folder / "in.png", folder / "out.png"}),
             "“in.png” could not be opened: Permission denied\n");
  EXPECT_EQ(namesIn(folder.path()), Names{"in.png"});
}

TEST(CropOnceFailure, FolderWithoutPermission) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  writeFile(folder / "out.png", "old");
  ::chmod((folder / "out.png").c_str(), 0666);
  ::chmod(folder.path().c_str(), 0555);
  for (const char* name : {"out.png", "new.png"}) {
    expectLine(cropAsOrdinaryUser({folder / "in.png", folder / name}),
               std::string("“") + name + "” could not be saved: Permission denied\n");
  }
  EXPECT_TRUE(readFile(folder / "out.png") == "old");
  EXPECT_EQ(namesIn(folder.path()), (Names{"in.png", "out.png"}));
}

TEST(CropOnceFailure, FolderThatIsNotThere) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  expectLine(cropOnce({folder / "in.png", folder / "no/out.png"}),
             "“out.png” could not be saved: No such file or directory\n");
  EXPECT_EQ(namesIn(folder.path()), Names{"in.png"});
}

TEST(CropOnceFailure, DestinationThatIsNoFile) {
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  std::filesystem::create_directory(folder / "album");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  expectLine(cropOnce({folder / "in.png", folder / "album"}),
             "“album” could not be saved: Is a directory\n");
  expectLine(cropOnce({folder / "in.png", folder / "pipe"}),
             "“pipe” could not be saved: Not a regular file\n");
  EXPECT_EQ(namesIn(folder.path()), (Names{"album", "in.png", "pipe"}));
}

TEST(CropOnceFailure, FileThatMayNotGrow) {
  const TemporaryFolder folder;
  savePng(folder / "in.png", 300, 200);
  writeFile(folder / "out.png", "old");
  for (const char* format : {"png", "jpeg"}) {
    for (const char* name : {"out.png", "new.png"}) {
      CropOnceProcess process;
      process.prepare = [] {
        const rlimit limit{20'000, 20'000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
      };
      process.start({folder / "in.png", folder / name, "--format", format, "--quality", "1"});
      expectLine(process.finish(), kEncodingFailed);
      EXPECT_TRUE(readFile(folder / "out.png") == "old");
      EXPECT_EQ(namesIn(folder.path()), (Names{"in.png", "out.png"}));
    }
  }
}

/// A small file system in memory, if this process may have one.
class SmallDisk {
 public:
  explicit SmallDisk(std::filesystem::path at) : m_path(std::move(at)) {
    std::filesystem::create_directory(m_path);
#ifdef Q_OS_LINUX
    m_isMounted = ::mount("none", m_path.c_str(), "tmpfs", 0, "size=64k") == 0;
#endif
  }
  ~SmallDisk() {
#ifdef Q_OS_LINUX
    if (m_isMounted) ::umount2(m_path.c_str(), MNT_DETACH);
#endif
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  [[nodiscard]] bool isMounted() const {
    return m_isMounted;
  }

 private:
  std::filesystem::path m_path;
  bool m_isMounted = false;
};

TEST(CropOnceFailure, FullDisk) {
  const TemporaryFolder folder;
  savePng(folder / "in.png", 300, 200);
  const SmallDisk disk(folder / "disk");
  if (!disk.isMounted()) GTEST_SKIP() << "this process may not mount a file system";
  writeFile(folder / "disk/out.png", "old");
  for (const char* format : {"png", "jpeg"}) {
    for (const char* name : {"disk/out.png", "disk/new.png"}) {
      expectLine(cropOnce({folder / "in.png", folder / name, "--format", format, "--quality", "1"}),
                 kEncodingFailed);
      EXPECT_TRUE(readFile(folder / "disk/out.png") == "old");
      EXPECT_EQ(namesIn(folder / "disk"), Names{"out.png"});
    }
  }
}

TEST(CropOnceFailure, ReportThatCannotBePrinted) {
  if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no device that is always full";
  const TemporaryFolder folder;
  savePng(folder / "in.png");
  CropOnceProcess process;
  process.outputFile = "/dev/full";
  process.start({folder / "in.png", folder / "out.png"});
  expectLine(process.finish(), "The report could not be printed: No space left on device\n");
  EXPECT_EQ(namesIn(folder.path()), (Names{"in.png", "out.png"}));
}

}  // namespace
}  // namespace vantrel
