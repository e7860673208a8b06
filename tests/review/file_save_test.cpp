#include "review/file_save.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QTest>
#include <optional>
#include <thread>
#include <vector>

#include "base/cancelled.h"
#include "base/failure.h"
#include "review/held_copy.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::namesIn;
using testing::readFile;
using testing::writeFile;
using Names = std::vector<std::string>;

class FileSaveTest : public ::testing::Test {
 protected:
  void start(const CopyFile& copy) {
    writeFile(source, "0123456789");
    begin(copy);
  }
  void begin(const CopyFile& copy) {
    save = std::make_unique<FileSave>(
        copy, source, folder / "out", [this](double fraction) { told.push_back(fraction); },
        [this](FileSave::Outcome result) { outcome = std::move(result); });
  }
  void wait() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return outcome.has_value(); }));
  }

  testing::TemporaryFolder folder;
  std::filesystem::path source = folder / "Vantrel-1.png";
  testing::HeldCopy held;
  std::vector<double> told;
  std::optional<FileSave::Outcome> outcome;
  std::unique_ptr<FileSave> save;
};

TEST_F(FileSaveTest, CopiesAndTellsTheFraction) {
  start(held.copy());
  held.tell(5);
  ASSERT_TRUE(QTest::qWaitFor([this] { return told.size() == 1; }));
  EXPECT_FALSE(outcome);
  held.finish();
  wait();
  outcome->get();
  EXPECT_THAT(told, ElementsAre(0.5, 1));
  EXPECT_EQ(readFile(folder / "out"), "0123456789");
}

TEST_F(FileSaveTest, TellsNoStepTwice) {
  start(held.copy());
  // A file that grew or shrank is no reason to leave the scale.
  for (const int64_t bytes : {5, 5, 4, 6, 20})
    held.tell(bytes);
  held.finish();
  wait();
  EXPECT_THAT(told, ElementsAre(0.5, 0.6, 1));
}

TEST_F(FileSaveTest, OfAnEmptyFileIsWhole) {
  writeFile(source, "");
  begin(held.copy());
  held.finish();
  wait();
  outcome->get();
  EXPECT_EQ(readFile(folder / "out"), "");
}

TEST_F(FileSaveTest, CancelLeavesTheDestination) {
  writeFile(folder / "out", "old");
  start(held.copy());
  held.tell(5);
  save->cancel();
  wait();
  EXPECT_THROW(outcome->get(), Cancelled);
  EXPECT_EQ(readFile(folder / "out"), "old");
  EXPECT_EQ(namesIn(folder.path()), (Names{"Vantrel-1.png", "out"}));
}

TEST_F(FileSaveTest, CancelledTooLateItIsDone) {
  start(held.copy());
  held.finish();
  // Without an event loop it cannot be told in the meantime.
  while (!std::filesystem::exists(folder / "out"))
    std::this_thread::yield();
  save->cancel();
  wait();
  EXPECT_NO_THROW(outcome->get());
}

TEST_F(FileSaveTest, TellsNothingAfterItsEnd) {
  start(held.copy());
  held.tell(5);
  held.tell(6);
  save.reset();
  QCoreApplication::processEvents();
  EXPECT_THAT(told, IsEmpty());
  EXPECT_FALSE(outcome);
  EXPECT_EQ(namesIn(folder.path()), Names{"Vantrel-1.png"});
}

TEST_F(FileSaveTest, SaysThatTheExportIsGoneWithoutNamingIt) {
  begin(held.copy());
  wait();
  try {
    outcome->get();
    ADD_FAILURE();
  } catch (const std::exception&) {
    EXPECT_EQ(
        userMessage(std::current_exception()),
        "“out” could not be saved: The finished export was deleted from the temporary folder");
  }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

}  // namespace
}  // namespace vantrel
