#include "editor/crop_window_commands.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>
#include <vector>

#include "editor/command_rows.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

using testing::CommandRow;
using testing::kCommandRows;
using testing::kInspectorRow;
using testing::kSituations;
using testing::Situation;
using Codec = EncodingSettings::Codec;
using Format = ImageEncodingSettings::Format;

class CropWindowCommandsTest : public ::testing::Test {
 protected:
  /// What an editor publishes in this situation.
  void enter(Situation situation) {
    const bool busy = situation & (testing::emptyBusy | testing::jpegBusy | testing::videoBusy);
    const bool loaded = !(situation & (testing::inReview | testing::empty | testing::emptyBusy));
    const bool isImage = situation & testing::kImages;
    commands = {};
    commands.hasActiveReview = situation == testing::inReview;
    if (situation == testing::inReview) return;
    commands.actions.emplace();
    commands.actions->canOpen = !busy;
    commands.actions->canEdit = commands.actions->canExport = loaded && !busy;
    commands.actions->isImage = isImage;
    commands.actions->canMatchBitrate = commands.actions->canEdit && !isImage;
    commands.actions->isHDR = situation == testing::hdr;
    commands.actions->bitrateRange = {0.5, 40};
    commands.actions->inspecting = true;
    commands.history = &history;
    history.reset({});
    history.setBitrate(5);
    history.setImageEncoding({situation == testing::png ? Format::png : Format::jpeg, 0.5, {}});
    history.setCrop({1, 0, 0, 0});
    history.undo();
  }
  void expect(const CommandRow& row, Situation situation) {
    EXPECT_EQ(commands.title(row.command), QString::fromUtf8(row.title));
    EXPECT_EQ(commands.isEnabled(row.command), (row.enabled & situation) != 0)
        << row.title << " in situation " << situation;
    EXPECT_EQ(commands.isVisible(row.command), (row.visible & situation) != 0)
        << row.title << " in situation " << situation;
  }
  [[nodiscard]] bool isEnabled(CropCommand command) const { return commands.isEnabled(command); }
  void setQuality(double quality) {
    history.setImageEncoding({Format::jpeg, quality, ImageBackground(0.25, 0.5, 1)});
  }
  [[nodiscard]] double quality() const { return history.imageEncoding().quality; }

  EditHistory history;
  CropWindowCommands commands;
};

TEST_F(CropWindowCommandsTest, AreAsTheTableSaysInEverySituation) {
  for (const Situation situation : kSituations) {
    enter(situation);
    for (const CommandRow& row : kCommandRows)
      expect(row, situation);
    if (situation != testing::inReview) expect(kInspectorRow, situation);
  }
}

TEST_F(CropWindowCommandsTest, ExportFollowsItsOwnTest) {
  enter(testing::video);
  commands.actions->canExport = false;
  EXPECT_FALSE(isEnabled(CropCommand::exportCrop));
  EXPECT_TRUE(isEnabled(CropCommand::closeFile));
}

TEST_F(CropWindowCommandsTest, TitlesTellWhatAnItemWouldDo) {
  enter(testing::empty);
  EXPECT_EQ(commands.title(CropCommand::inspector), QStringLiteral("Hide Inspector"));
  EXPECT_FALSE(isEnabled(CropCommand::inspector));
  commands.actions->inspecting = false;
  EXPECT_EQ(commands.title(CropCommand::inspector), QStringLiteral("Show Inspector"));
  EXPECT_EQ(commands.title(CropCommand::preview), QStringLiteral("Preview Crop"));
  commands.actions->previewing = true;
  EXPECT_EQ(commands.title(CropCommand::preview), QStringLiteral("Exit Preview"));
  EXPECT_EQ(commands.title(CropCommand::closeWindow), QStringLiteral("Close Window"));
  commands.isInTabs = true;
  EXPECT_EQ(commands.title(CropCommand::closeWindow), QStringLiteral("Close Tab"));
  enter(testing::inReview);
  EXPECT_EQ(commands.title(CropCommand::inspector), QStringLiteral("Show Inspector"));
  EXPECT_EQ(commands.title(CropCommand::preview), QStringLiteral("Preview Crop"));
}

TEST_F(CropWindowCommandsTest, SaveNeedsNoEditor) {
  enter(testing::video);
  commands.hasActiveReview = true;
  EXPECT_TRUE(isEnabled(CropCommand::save));
  enter(testing::inReview);
  commands.hasActiveReview = false;
  EXPECT_FALSE(isEnabled(CropCommand::save));
}

TEST_F(CropWindowCommandsTest, UndoAndRedoAlsoServeTextBeingTyped) {
  enter(testing::png);
  history.reset({});
  EXPECT_FALSE(isEnabled(CropCommand::undo));
  EXPECT_FALSE(isEnabled(CropCommand::redo));
  commands.isEditingText = true;
  EXPECT_TRUE(isEnabled(CropCommand::undo));
  EXPECT_TRUE(isEnabled(CropCommand::redo));
  commands.actions->canEdit = false;
  EXPECT_FALSE(isEnabled(CropCommand::undo));
  EXPECT_FALSE(isEnabled(CropCommand::redo));
}

TEST_F(CropWindowCommandsTest, UndoAndRedoFollowTheHistory) {
  enter(testing::png);
  history.reset({});
  history.setCrop({1, 0, 0, 0});
  EXPECT_TRUE(isEnabled(CropCommand::undo));
  EXPECT_FALSE(isEnabled(CropCommand::redo));
  commands.perform(CropCommand::undo);
  EXPECT_EQ(history.crop(), CropMargins());
  EXPECT_FALSE(isEnabled(CropCommand::undo));
  EXPECT_TRUE(isEnabled(CropCommand::redo));
  commands.perform(CropCommand::redo);
  EXPECT_EQ(history.crop(), (CropMargins{1, 0, 0, 0}));
}

TEST_F(CropWindowCommandsTest, ChoicesShowTheHistoryOrTheDefaults) {
  for (const Situation situation : {testing::inReview, testing::png}) {
    enter(situation);
    EXPECT_TRUE(commands.isChecked(CropCommand::png));
    EXPECT_FALSE(commands.isChecked(CropCommand::jpeg));
    EXPECT_FALSE(commands.isChecked(CropCommand::h264));
    EXPECT_TRUE(commands.isChecked(CropCommand::hevc));
  }
  enter(testing::jpeg);
  history.setCodec(Codec::h264);
  EXPECT_FALSE(commands.isChecked(CropCommand::png));
  EXPECT_TRUE(commands.isChecked(CropCommand::jpeg));
  EXPECT_TRUE(commands.isChecked(CropCommand::h264));
  EXPECT_FALSE(commands.isChecked(CropCommand::hevc));
  EXPECT_FALSE(commands.isChecked(CropCommand::format));
}

TEST_F(CropWindowCommandsTest, ChoosingAFormatKeepsTheRestAndIsOneEdit) {
  enter(testing::png);
  setQuality(0.3);
  const ImageEncodingSettings before = history.imageEncoding();
  const int steps = history.manager().count();
  commands.perform(CropCommand::png);
  ImageEncodingSettings expected = before;
  expected.format = Format::png;
  EXPECT_EQ(history.imageEncoding(), expected);
  EXPECT_EQ(history.manager().count(), steps + 1);
  commands.perform(CropCommand::png);
  EXPECT_EQ(history.manager().count(), steps + 1) << "the one that is chosen already";
  commands.perform(CropCommand::jpeg);
  EXPECT_EQ(history.imageEncoding(), before);
}

TEST_F(CropWindowCommandsTest, ChoosingACodecIsOneEdit) {
  enter(testing::video);
  commands.perform(CropCommand::h264);
  EXPECT_EQ(history.codec(), Codec::h264);
  EXPECT_EQ(history.bitrate(), 5);
  commands.perform(CropCommand::hevc);
  EXPECT_EQ(history.codec(), Codec::hevc);
  commands.perform(CropCommand::undo);
  EXPECT_EQ(history.codec(), Codec::h264);
}

TEST_F(CropWindowCommandsTest, QualityMovesByStepsAndStopsAtItsEnds) {
  enter(testing::jpeg);
  setQuality(0.42);
  commands.perform(CropCommand::increaseQuality);
  EXPECT_DOUBLE_EQ(quality(), 0.47);
  commands.perform(CropCommand::decreaseQuality);
  commands.perform(CropCommand::decreaseQuality);
  EXPECT_DOUBLE_EQ(quality(), 0.37);
  EXPECT_EQ(history.imageEncoding().background, ImageBackground(0.25, 0.5, 1));
  EXPECT_EQ(history.imageEncoding().format, Format::jpeg);

  setQuality(0.98);
  EXPECT_TRUE(isEnabled(CropCommand::increaseQuality));
  commands.perform(CropCommand::increaseQuality);
  EXPECT_EQ(quality(), 1);
  EXPECT_FALSE(isEnabled(CropCommand::increaseQuality));
  EXPECT_TRUE(isEnabled(CropCommand::decreaseQuality));

  setQuality(0.01);
  commands.perform(CropCommand::decreaseQuality);
  EXPECT_EQ(quality(), 0);
  EXPECT_FALSE(isEnabled(CropCommand::decreaseQuality));
  EXPECT_TRUE(isEnabled(CropCommand::increaseQuality));
}

TEST_F(CropWindowCommandsTest, ResettingTheQualityKeepsTheRest) {
  enter(testing::jpeg);
  setQuality(0.1);
  commands.perform(CropCommand::resetQuality);
  EXPECT_EQ(history.imageEncoding(),
            (ImageEncodingSettings{Format::jpeg, 0.9, ImageBackground(0.25, 0.5, 1)}));
  EXPECT_TRUE(isEnabled(CropCommand::resetQuality)) << "also at the default";
}

TEST_F(CropWindowCommandsTest, BitrateMovesByStepsAndStopsAtItsEnds) {
  enter(testing::video);
  history.setBitrate(3.21);
  commands.perform(CropCommand::increaseBitrate);
  EXPECT_DOUBLE_EQ(history.bitrate(), 3.71);
  history.setBitrate(0.7);
  EXPECT_TRUE(isEnabled(CropCommand::decreaseBitrate));
  const int steps = history.manager().count();
  commands.perform(CropCommand::decreaseBitrate);
  EXPECT_EQ(history.manager().count(), steps + 1);
  EXPECT_EQ(history.bitrate(), 0.5);
  EXPECT_FALSE(isEnabled(CropCommand::decreaseBitrate));
  history.setBitrate(39.8);
  commands.perform(CropCommand::increaseBitrate);
  EXPECT_EQ(history.bitrate(), 40);
  EXPECT_FALSE(isEnabled(CropCommand::increaseBitrate));
  EXPECT_TRUE(isEnabled(CropCommand::decreaseBitrate));
}

TEST_F(CropWindowCommandsTest, ABitrateOutsideItsRangeComesBackIntoIt) {
  enter(testing::video);
  history.setBitrate(100);
  EXPECT_FALSE(isEnabled(CropCommand::increaseBitrate));
  commands.perform(CropCommand::decreaseBitrate);
  EXPECT_EQ(history.bitrate(), 40);
  history.setBitrate(0.02);
  EXPECT_FALSE(isEnabled(CropCommand::decreaseBitrate));
  commands.perform(CropCommand::increaseBitrate);
  EXPECT_DOUBLE_EQ(history.bitrate(), 0.52);
}

TEST_F(CropWindowCommandsTest, TheUpperBoundOfTheBitrateWins) {
  enter(testing::video);
  commands.actions->bitrateRange = {8, 3};
  commands.perform(CropCommand::decreaseBitrate);
  EXPECT_EQ(history.bitrate(), 3);
}

TEST_F(CropWindowCommandsTest, WithoutAHistoryNothingIsDone) {
  enter(testing::jpeg);
  commands.history = nullptr;
  EXPECT_FALSE(isEnabled(CropCommand::undo));
  for (const CropCommand command :
       {CropCommand::increaseQuality, CropCommand::decreaseQuality, CropCommand::resetQuality}) {
    EXPECT_FALSE(isEnabled(command));
  }
  EXPECT_TRUE(isEnabled(CropCommand::format));
  enter(testing::video);
  commands.history = nullptr;
  EXPECT_TRUE(isEnabled(CropCommand::increaseBitrate)) << "from 0";
  EXPECT_FALSE(isEnabled(CropCommand::decreaseBitrate));
  const CropEdit before = history.value();
  for (const CommandRow& row : kCommandRows)
    commands.perform(row.command);
  EXPECT_EQ(history.value(), before);
}

TEST_F(CropWindowCommandsTest, WithoutActionsNothingIsDone) {
  enter(testing::inReview);
  for (const CommandRow& row : kCommandRows)
    commands.perform(row.command);
  history.reset({});
  history.setBitrate(5);
  commands.history = &history;
  commands.perform(CropCommand::increaseBitrate);
  commands.perform(CropCommand::decreaseBitrate);
  EXPECT_EQ(history.bitrate(), 5);
}

TEST_F(CropWindowCommandsTest, EachItemRunsItsOwnAction) {
  using Action = CropWindowActions::Action;
  const std::array<std::pair<CropCommand, Action CropWindowActions::*>, 11> actions{{
      {CropCommand::open, &CropWindowActions::open},
      {CropCommand::closeFile, &CropWindowActions::close},
      {CropCommand::exportCrop, &CropWindowActions::exportMedia},
      {CropCommand::zoomToFit, &CropWindowActions::fit},
      {CropCommand::actualSize, &CropWindowActions::actualSize},
      {CropCommand::zoomIn, &CropWindowActions::zoomIn},
      {CropCommand::zoomOut, &CropWindowActions::zoomOut},
      {CropCommand::preview, &CropWindowActions::preview},
      {CropCommand::inspector, &CropWindowActions::inspector},
      {CropCommand::resetCrop, &CropWindowActions::resetCrop},
      {CropCommand::matchOriginalBitrate, &CropWindowActions::matchBitrate},
  }};
  enter(testing::video);
  std::vector<CropCommand> done;
  for (const auto& [command, action] : actions) {
    (*commands.actions).*action = [&done, command = command] { done.push_back(command); };
  }
  std::vector<CropCommand> asked;
  for (const auto& [command, action] : actions) {
    asked.push_back(command);
    commands.perform(command);
  }
  EXPECT_EQ(done, asked);
}

}  // namespace
}  // namespace vantrel
