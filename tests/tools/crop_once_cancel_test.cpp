#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <QEventLoop>
#include <QFileSystemWatcher>

#include "support/image_makers.h"
#include "support/temporary_folder.h"
#include "tools/crop_once_process.h"

namespace vantrel {
namespace {

using testing::CropOnceProcess;
using testing::CropOnceResult;
using testing::namesIn;
using testing::readFile;
using testing::TemporaryFolder;
using testing::writeFile;
using Names = std::vector<std::string>;

/// A picture that takes long to write, in a small file: grey, all black.
void saveLargePng(const std::filesystem::path& path) {
  testing::PngSpec spec;
  spec.width = spec.height = 9'000;
  spec.colorType = 0;
  const testing::Bytes rows(size_t{spec.height} * (spec.width + 1));
  testing::saveBytes(path, testing::makePngAround(spec, testing::deflated(rows)));
}

void expectCancelled(const CropOnceResult& result) {
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "Export cancelled\n");
}

/// Source and destination in folders of their own, so that what happens to each can be told.
class CropOnceCancel : public ::testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    saveLargePng(source / "in.png");
    writeFile(target / "out.png", "old");
  }
  void TearDown() override {
    EXPECT_TRUE(readFile(target / "out.png") == "old");
    EXPECT_EQ(namesIn(target.path()), Names{"out.png"});
    EXPECT_EQ(namesIn(source.path()), Names{"in.png"});
  }

  TemporaryFolder source, target;
};

TEST_P(CropOnceCancel, WhileWritingCleansUp) {
  QFileSystemWatcher watcher({QString::fromStdString(target.path().string())});
  QEventLoop loop;
  QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, &loop, &QEventLoop::quit);
  CropOnceProcess process;
  process.start({source / "in.png", target / "out.png"});
  loop.exec();
  EXPECT_EQ(namesIn(target.path()).size(), 2U) << "the temporary file must be there by now";
  process.signal(GetParam());
  expectCancelled(process.finish());
}

TEST_P(CropOnceCancel, FromTheStartWritesNothing) {
  CropOnceProcess process;
  // A signal that waits outlives the start of the program.
  process.prepare = [signal = GetParam()] {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, signal);
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    ::kill(::getpid(), signal);
  };
  process.start({source / "in.png", target / "out.png"});
  expectCancelled(process.finish());
}

INSTANTIATE_TEST_SUITE_P(Signals, CropOnceCancel, ::testing::Values(SIGINT, SIGTERM));

}  // namespace
}  // namespace vantrel
