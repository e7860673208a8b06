#include "controls/crop_undo_routing.h"

#include <gtest/gtest.h>

#include "controls/field_window.h"

namespace vantrel {
namespace {

TEST(CropUndoRouting, GoesToTheHistoryWithoutAWindow) {
  EditHistory history;
  history.setBitrate(4);
  CropUndoRouting::perform(history, false);
  EXPECT_EQ(history.bitrate(), 2.5);
  CropUndoRouting::perform(history, true);
  EXPECT_EQ(history.bitrate(), 4);
}

TEST(CropUndoRouting, UndoesTypingFirstAndThenTheCrop) {
  FieldWindow fields(1);
  ASSERT_TRUE(fields.isReady());
  fields.history.setCrop({0, 5, 0, 0});
  fields.plain.setFocus();
  QTest::keyClicks(&fields.plain, QStringLiteral("word"));
  CropUndoRouting::perform(fields.history, false);
  EXPECT_EQ(fields.plain.text(), QString());
  EXPECT_EQ(fields.history.crop().top, 5);
  EXPECT_TRUE(fields.plain.hasFocus());
  CropUndoRouting::perform(fields.history, true);
  EXPECT_EQ(fields.plain.text(), QStringLiteral("word"));
  CropUndoRouting::perform(fields.history, false);
  CropUndoRouting::perform(fields.history, false);
  EXPECT_EQ(fields.history.crop().top, 0);
  EXPECT_FALSE(fields.plain.hasFocus());
}

TEST(CropUndoRouting, RedoLooksAtWhatTheTextCanRedo) {
  FieldWindow fields(1);
  ASSERT_TRUE(fields.isReady());
  fields.history.setCrop({0, 5, 0, 0});
  fields.history.undo();
  fields.plain.setFocus();
  QTest::keyClicks(&fields.plain, QStringLiteral("word"));
  CropUndoRouting::perform(fields.history, true);
  EXPECT_EQ(fields.plain.text(), QStringLiteral("word"));
  EXPECT_EQ(fields.history.crop().top, 5);
}

TEST(CropUndoRouting, FieldFilledByTheProgramHasNoTypingToUndo) {
  FieldWindow fields(1);
  ASSERT_TRUE(fields.isReady());
  fields.history.setCrop({9, 0, 0, 0});
  fields.left.setFocus();
  CropUndoRouting::perform(fields.history, false);
  EXPECT_EQ(fields.history.crop().left, 0);
  EXPECT_FALSE(fields.left.hasFocus());
  EXPECT_EQ(fields.left.text(), QStringLiteral("0"));
}

TEST(CropUndoRouting, ReadOnlyFieldHasNoTypingToUndo) {
  FieldWindow fields(1);
  ASSERT_TRUE(fields.isReady());
  fields.history.setCrop({9, 0, 0, 0});
  fields.plain.setFocus();
  QTest::keyClicks(&fields.plain, QStringLiteral("word"));
  fields.plain.setReadOnly(true);
  CropUndoRouting::perform(fields.history, false);
  EXPECT_EQ(fields.plain.text(), QStringLiteral("word"));
  EXPECT_EQ(fields.history.crop().left, 0);
}

TEST(CropUndoRouting, UndoneTypingOfAMarginMovesTheCropBack) {
  FieldWindow fields(1);
  ASSERT_TRUE(fields.isReady());
  fields.left.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.left, QStringLiteral("12"));
  CropUndoRouting::perform(fields.history, false);
  EXPECT_TRUE(fields.left.hasFocus());
  EXPECT_EQ(fields.left.text(), QStringLiteral("0"));
  EXPECT_EQ(fields.history.crop().left, 0);
}

TEST(CropUndoRouting, CommitsAStepOfTheFieldAndUndoesIt) {
  FieldWindow fields(1);
  ASSERT_TRUE(fields.isReady());
  fields.left.setFocus();
  QTest::keyClick(&fields.left, Qt::Key_Up);
  QTest::keyClick(&fields.left, Qt::Key_Up);
  CropUndoRouting::perform(fields.history, false);
  EXPECT_EQ(fields.history.crop().left, 0);
  EXPECT_FALSE(fields.left.isEditing());
  EXPECT_TRUE(fields.history.canRedo());
  CropUndoRouting::perform(fields.history, true);
  EXPECT_EQ(fields.history.crop().left, 2);
}

TEST(CropUndoRouting, EntryTakenByReturnIsUndoneInTheHistory) {
  FieldWindow fields(2);
  ASSERT_TRUE(fields.isReady());
  fields.width.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.width, QStringLiteral("800"));
  QTest::keyClick(&fields.width, Qt::Key_Return);
  CropUndoRouting::perform(fields.history, false);
  EXPECT_EQ(fields.size().width(), 1920);
  EXPECT_EQ(fields.width.text(), QStringLiteral("1920"));
  EXPECT_FALSE(fields.history.canUndo());
}

}  // namespace
}  // namespace vantrel
