#include "model/edit_history.h"

#include <gtest/gtest.h>

#include "model/printers.h"

namespace vantrel {
namespace {

using Codec = EncodingSettings::Codec;
using Format = ImageEncodingSettings::Format;

/// Counts what a history tells.
struct Signals {
  explicit Signals(EditHistory& history) {
    QObject::connect(&history, &EditHistory::cropChanged, &context, [this] { ++crop; });
    QObject::connect(&history, &EditHistory::encodingChanged, &context, [this] { ++encoding; });
    QObject::connect(&history, &EditHistory::imageEncodingChanged, &context, [this] { ++image; });
    QObject::connect(&history, &EditHistory::revisionChanged, &context, [this] { ++revision; });
  }

  int crop = 0, encoding = 0, image = 0, revision = 0;
  QObject context;
};

CropMargins leftBy(int64_t left) {
  return {left, 0, 0, 0};
}

TEST(EditHistory, BeginsWithDefaultsAndNothingToUndo) {
  const EditHistory history;
  EXPECT_EQ(history.value(), CropEdit());
  EXPECT_EQ(history.crop(), CropMargins());
  EXPECT_EQ(history.codec(), Codec::hevc);
  EXPECT_EQ(history.bitrate(), 2.5);
  EXPECT_EQ(history.imageEncoding(), ImageEncodingSettings());
  EXPECT_EQ(history.pixelStep(), 2);
  EXPECT_EQ(history.revision(), 0);
  EXPECT_FALSE(history.canUndo());
  EXPECT_FALSE(history.canRedo());
}

TEST(EditHistory, EachSetterIsAStepOfItsOwn) {
  EditHistory history;
  history.setCrop(leftBy(1));
  history.setCodec(Codec::h264);
  history.setBitrate(5);
  history.setImageEncoding({Format::jpeg, 0.5, {}});
  EXPECT_EQ(history.value(), (CropEdit{leftBy(1), {Codec::h264, 5}, {Format::jpeg, 0.5, {}}}));
  EXPECT_EQ(history.manager().count(), 4);
  history.undo();
  EXPECT_EQ(history.imageEncoding(), ImageEncodingSettings());
  history.undo();
  EXPECT_EQ(history.bitrate(), 2.5);
  history.undo();
  EXPECT_EQ(history.codec(), Codec::hevc);
  history.undo();
  EXPECT_EQ(history.value(), CropEdit());
  EXPECT_FALSE(history.canUndo());
  EXPECT_TRUE(history.canRedo());
}

TEST(EditHistory, StepsAreNamed) {
  EditHistory history;
  history.setCrop(leftBy(1));
  EXPECT_EQ(history.manager().undoText(), QStringLiteral("Crop and Encoding"));
  history.undo();
  EXPECT_EQ(history.manager().redoText(), QStringLiteral("Crop and Encoding"));
}

TEST(EditHistory, SettingThePresentValueIsNoEdit) {
  EditHistory history;
  history.setCrop(leftBy(1));
  const int64_t revision = history.revision();
  const Signals told(history);
  history.setCrop(leftBy(1));
  history.set(history.value());
  EXPECT_EQ(history.manager().count(), 1);
  EXPECT_EQ(history.revision(), revision);
  EXPECT_EQ(told.crop + told.encoding + told.image + told.revision, 0);
}

TEST(EditHistory, TransactionIsOneStep) {
  EditHistory history;
  history.begin();
  history.setCrop(leftBy(1));
  history.setCrop(leftBy(2));
  history.setBitrate(9);
  EXPECT_EQ(history.manager().count(), 0);
  history.end();
  EXPECT_EQ(history.manager().count(), 1);
  history.undo();
  EXPECT_EQ(history.value(), CropEdit());
  history.redo();
  EXPECT_EQ(history.crop(), leftBy(2));
  EXPECT_EQ(history.bitrate(), 9);
}

TEST(EditHistory, SecondBeginKeepsTheFirstState) {
  EditHistory history;
  history.begin();
  history.setCrop(leftBy(1));
  history.begin();
  history.setCrop(leftBy(2));
  history.end();
  history.end();
  EXPECT_EQ(history.manager().count(), 1);
  history.undo();
  EXPECT_EQ(history.crop(), CropMargins());
}

TEST(EditHistory, TransactionThatComesBackIsNoStep) {
  EditHistory history;
  history.begin();
  history.setCrop(leftBy(1));
  history.setCrop(leftBy(0));
  history.end();
  EXPECT_EQ(history.manager().count(), 0);
  EXPECT_FALSE(history.canUndo());
}

TEST(EditHistory, EndWithoutBeginDoesNothing) {
  EditHistory history;
  const Signals told(history);
  history.end();
  EXPECT_EQ(history.revision(), 0);
  EXPECT_EQ(told.revision, 0);
}

TEST(EditHistory, OpenTransactionThatChangedSomethingCanBeUndone) {
  EditHistory history;
  history.begin();
  EXPECT_FALSE(history.canUndo());
  const Signals told(history);
  history.setCrop(leftBy(1));
  EXPECT_TRUE(history.canUndo());
  EXPECT_EQ(told.revision, 1);
  history.setCrop(leftBy(2));
  EXPECT_EQ(told.revision, 1);
  history.setCrop(leftBy(0));
  EXPECT_FALSE(history.canUndo());
  EXPECT_EQ(told.revision, 2);
}

TEST(EditHistory, UndoInATransactionUndoesWhatItHasDone) {
  EditHistory history;
  history.setCrop(leftBy(1));
  history.begin();
  history.setCrop(leftBy(2));
  history.setCrop(leftBy(3));
  history.undo();
  EXPECT_EQ(history.crop(), leftBy(1));
  history.setCrop(leftBy(4));
  EXPECT_EQ(history.manager().count(), 2) << "the transaction is closed";
  history.undo();
  EXPECT_EQ(history.crop(), leftBy(1));
}

TEST(EditHistory, RedoInAChangedTransactionFindsNothing) {
  EditHistory history;
  history.setCrop(leftBy(1));
  history.undo();
  history.begin();
  history.setCrop(leftBy(2));
  history.redo();
  EXPECT_EQ(history.crop(), leftBy(2));
  EXPECT_FALSE(history.canRedo());
  history.undo();
  EXPECT_EQ(history.crop(), CropMargins());
}

TEST(EditHistory, NewEditClearsRedo) {
  EditHistory history;
  history.setCrop(leftBy(1));
  history.undo();
  history.setBitrate(4);
  EXPECT_FALSE(history.canRedo());
  history.redo();
  EXPECT_EQ(history.crop(), CropMargins());
  EXPECT_EQ(history.bitrate(), 4);
}

TEST(EditHistory, EmptyUndoAndRedoStillRaiseTheRevision) {
  EditHistory history;
  const Signals told(history);
  history.undo();
  EXPECT_EQ(history.revision(), 1);
  history.redo();
  EXPECT_EQ(history.revision(), 2);
  EXPECT_EQ(told.revision, 2);
  EXPECT_EQ(told.crop, 0);
}

TEST(EditHistory, ResetIsANewStart) {
  EditHistory history;
  history.setCrop(leftBy(1));
  history.setCrop(leftBy(2));
  history.undo();
  const CropEdit start{leftBy(7), {Codec::h264, 8}, {}};
  const int64_t revision = history.revision();
  history.reset(start);
  EXPECT_EQ(history.value(), start);
  EXPECT_FALSE(history.canUndo());
  EXPECT_FALSE(history.canRedo());
  EXPECT_GT(history.revision(), revision);
}

TEST(EditHistory, ResetDropsAnOpenTransaction) {
  EditHistory history;
  history.begin();
  history.setCrop(leftBy(1));
  history.reset({leftBy(5), {}, {}});
  EXPECT_FALSE(history.canUndo());
  history.end();
  EXPECT_EQ(history.manager().count(), 0);
  history.setCrop(leftBy(6));
  EXPECT_EQ(history.manager().count(), 1);
}

TEST(EditHistory, PixelStepTakesNoPartInUndo) {
  EditHistory history;
  history.setPixelStep(1);
  EXPECT_FALSE(history.canUndo());
  history.setCrop(leftBy(1));
  history.undo();
  history.reset({});
  EXPECT_EQ(history.pixelStep(), 1);
}

TEST(EditHistorySignals, ComeOnlyForWhatChanged) {
  EditHistory history;
  const Signals told(history);
  history.setCrop(leftBy(1));
  EXPECT_EQ(told.crop, 1);
  history.setCodec(Codec::h264);
  history.setBitrate(3);
  EXPECT_EQ(told.encoding, 2);
  history.setImageEncoding({Format::jpeg, 0.9, {}});
  EXPECT_EQ(told.image, 1);
  EXPECT_EQ(told.crop, 1);
  EXPECT_EQ(told.revision, 4);
}

TEST(EditHistorySignals, ComeOnceForEachOperation) {
  EditHistory history;
  history.begin();
  history.set({leftBy(1), {Codec::h264, 1}, {Format::jpeg, 0.1, {}}});
  const Signals told(history);
  history.undo();
  EXPECT_EQ(told.crop, 1);
  EXPECT_EQ(told.encoding, 1);
  EXPECT_EQ(told.image, 1);
  EXPECT_EQ(told.revision, 1);
}

TEST(EditHistorySignals, NeverShowHalfAnEdit) {
  EditHistory history;
  const CropEdit edit{leftBy(1), {Codec::h264, 1}, {Format::jpeg, 0.1, {}}};
  CropEdit expected = edit;
  bool canUndo = true;
  int seen = 0;
  const auto look = [&] {
    EXPECT_EQ(history.value(), expected);
    EXPECT_EQ(history.canUndo(), canUndo);
    EXPECT_EQ(history.canRedo(), !canUndo);
    ++seen;
  };
  QObject context;
  QObject::connect(&history, &EditHistory::cropChanged, &context, look);
  QObject::connect(&history, &EditHistory::encodingChanged, &context, look);
  QObject::connect(&history, &EditHistory::imageEncodingChanged, &context, look);
  QObject::connect(&history, &EditHistory::revisionChanged, &context, look);
  history.set(edit);
  expected = CropEdit();
  canUndo = false;
  history.undo();
  expected = edit;
  canUndo = true;
  history.redo();
  EXPECT_EQ(seen, 12);
}

TEST(EditHistorySignals, SlotMayEditAgain) {
  EditHistory history;
  QObject context;
  QObject::connect(&history, &EditHistory::cropChanged, &context,
                   [&] { history.setBitrate(static_cast<double>(history.crop().left)); });
  history.setCrop(leftBy(3));
  EXPECT_EQ(history.bitrate(), 3);
  history.undo();
  EXPECT_EQ(history.bitrate(), 2.5);
  EXPECT_EQ(history.crop(), leftBy(3));
  history.undo();
  EXPECT_EQ(history.crop(), CropMargins());
}

const QSizeF kSource(300, 100);

/// 101 pixels from 10, whose centre lies on a half pixel.
void startResizing(EditHistory& history) {
  history.setPixelStep(1);
  history.reset({CropMargins{10, 0, 189, 0}, {}, {}});
}

TEST(EditHistoryResizing, KeepsTheFirstCentre) {
  EditHistory history;
  startResizing(history);
  history.resizeCrop(50, 100, kSource);
  EXPECT_EQ(history.crop(), (CropMargins{36, 0, 214, 0}));
  // Around the new crop's own centre, 61, this would be 11.
  history.resizeCrop(101, 100, kSource);
  EXPECT_EQ(history.crop(), (CropMargins{10, 0, 189, 0}));
}

TEST(EditHistoryResizing, KeepsTheCentreThroughABorder) {
  EditHistory history;
  startResizing(history);
  history.resizeCrop(300, 100, kSource);
  EXPECT_EQ(history.crop(), CropMargins());
  history.resizeCrop(101, 100, kSource);
  EXPECT_EQ(history.crop(), (CropMargins{10, 0, 189, 0}));
}

TEST(EditHistoryResizing, TakesTheCentreAlsoWhenNothingChanges) {
  EditHistory history;
  startResizing(history);
  history.resizeCrop(101, 100, kSource);
  EXPECT_FALSE(history.canUndo());
  history.resizeCrop(50, 100, kSource);
  history.resizeCrop(101, 100, kSource);
  EXPECT_EQ(history.crop(), (CropMargins{10, 0, 189, 0}));
}

TEST(EditHistoryResizing, EncodingKeepsTheCentre) {
  EditHistory history;
  startResizing(history);
  history.resizeCrop(50, 100, kSource);
  history.setBitrate(9);
  history.setImageEncoding({Format::jpeg, 0.9, {}});
  history.setCrop(history.crop());
  history.resizeCrop(101, 100, kSource);
  EXPECT_EQ(history.crop(), (CropMargins{10, 0, 189, 0}));
}

TEST(EditHistoryResizing, AnyOtherChangeOfTheCropDropsTheCentre) {
  EditHistory moved;
  startResizing(moved);
  moved.resizeCrop(50, 100, kSource);
  moved.setCrop(moved.crop().translated(1, 0));
  moved.setCrop(moved.crop().translated(-1, 0));
  moved.resizeCrop(101, 100, kSource);
  EXPECT_EQ(moved.crop(), (CropMargins{11, 0, 188, 0}));

  EditHistory started;
  startResizing(started);
  started.resizeCrop(50, 100, kSource);
  started.reset({CropMargins{0, 0, 200, 0}, {}, {}});
  started.resizeCrop(50, 100, kSource);
  EXPECT_EQ(started.crop(), (CropMargins{25, 0, 225, 0}));
}

TEST(EditHistoryResizing, UndoDropsTheCentre) {
  EditHistory history;
  startResizing(history);
  history.resizeCrop(50, 100, kSource);
  history.resizeCrop(20, 100, kSource);
  history.undo();
  EXPECT_EQ(history.crop(), (CropMargins{36, 0, 214, 0}));
  history.resizeCrop(101, 100, kSource);
  EXPECT_EQ(history.crop(), (CropMargins{11, 0, 188, 0}));
}

TEST(EditHistoryResizing, UsesThePixelStep) {
  EditHistory history;
  history.reset({});
  history.resizeCrop(51, 31, kSource);
  EXPECT_EQ(history.crop(), (CropMargins{125, 35, 125, 35}));
}

}  // namespace
}  // namespace vantrel
