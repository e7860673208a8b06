#include "controls/number_entry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace vantrel {
namespace {

constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();

/// A margin that is held between 0 and 100.
struct Margin {
  explicit Margin(int64_t value) { entry.setValue(value); }

  EditHistory history;
  std::vector<int64_t> taken;
  MarginEntry entry{history, [this](int64_t wanted) {
                      taken.push_back(wanted);
                      const int64_t left = std::clamp<int64_t>(wanted, 0, 100);
                      history.setCrop({left, 0, 0, 0});
                      entry.setValue(left);
                    }};
};

/// A width in a source of 1921 pixels, taken as it is.
struct Dimension {
  explicit Dimension(int64_t value) {
    entry.setMaximum(1921);
    entry.setValue(value);
  }

  EditHistory history;
  std::vector<int64_t> taken;
  int rejections = 0;
  DimensionEntry entry{history,
                       [this](int64_t wanted) {
                         taken.push_back(wanted);
                         history.setCrop({1921 - wanted, 0, 0, 0});
                         entry.setValue(wanted);
                       },
                       [this] { ++rejections; }};
};

TEST(NumberEntry, HandlesArrowsAndReturnAlone) {
  for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Return, Qt::Key_Enter}) {
    EXPECT_TRUE(NumberEntry::isCommand(key, Qt::NoModifier));
    EXPECT_TRUE(NumberEntry::isCommand(key, Qt::ShiftModifier));
    EXPECT_TRUE(NumberEntry::isCommand(key, Qt::KeypadModifier));
    EXPECT_FALSE(NumberEntry::isCommand(key, Qt::ControlModifier));
    EXPECT_FALSE(NumberEntry::isCommand(key, Qt::AltModifier | Qt::ShiftModifier));
  }
  for (const int key : {Qt::Key_Left, Qt::Key_Escape, Qt::Key_Tab, Qt::Key_1, Qt::Key_PageUp}) {
    EXPECT_FALSE(NumberEntry::isCommand(key, Qt::NoModifier));
  }
}

TEST(NumberEntry, ShowsTheValueOrNothing) {
  Margin margin(12);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("12"));
  margin.entry.setShowsPlaceholder(true);
  EXPECT_EQ(margin.entry.text(), QString());
  margin.entry.setShowsPlaceholder(false);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("12"));
}

TEST(NumberEntry, TextInEditingIsNotOverwritten) {
  Margin margin(12);
  margin.entry.begin();
  margin.entry.setValue(50);
  margin.entry.setShowsPlaceholder(true);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("12"));
  margin.entry.setShowsPlaceholder(false);
  margin.entry.end();
  EXPECT_EQ(margin.entry.text(), QStringLiteral("50"));
  EXPECT_TRUE(margin.taken.empty()) << "what was only shown is no entry";
}

TEST(NumberEntry, EndingTwiceOrUnbegunDoesNothing) {
  Margin margin(12);
  margin.history.begin();
  margin.history.setBitrate(3);
  margin.entry.end();
  EXPECT_EQ(margin.history.manager().count(), 0) << "another's transaction was closed";
}

TEST(NumberEntry, OneThatGoesAwayClosesItsTransaction) {
  EditHistory history;
  {
    MarginEntry entry(history, [&](int64_t value) { history.setCrop({value, 0, 0, 0}); });
    entry.begin();
    entry.type(QStringLiteral("7"));
  }
  EXPECT_EQ(history.manager().count(), 1);
}

TEST(MarginEntry, FollowsEachTextThatIsANumber) {
  Margin margin(0);
  margin.entry.begin();
  for (const char16_t* const text : {u"1", u"12", u"12a", u"", u"-", u"-3", u" 5"}) {
    margin.entry.type(QString::fromUtf16(text));
    EXPECT_EQ(margin.entry.text(), QString::fromUtf16(text));
  }
  EXPECT_EQ(margin.taken, (std::vector<int64_t>{1, 12, -3}));
}

TEST(MarginEntry, TextIsCorrectedOnlyAtTheEnd) {
  Margin margin(0);
  margin.entry.begin();
  margin.entry.type(QStringLiteral("5000"));
  EXPECT_EQ(margin.entry.text(), QStringLiteral("5000"));
  EXPECT_EQ(margin.entry.value(), 100);
  margin.entry.end();
  EXPECT_EQ(margin.entry.text(), QStringLiteral("100"));
}

TEST(MarginEntry, TypedNumberIsTakenAgainAtTheEnd) {
  Margin margin(0);
  margin.entry.begin();
  margin.entry.type(QStringLiteral("5"));
  margin.history.setCrop({33, 0, 0, 0});
  margin.entry.setValue(33);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("5"));
  margin.entry.end();
  EXPECT_EQ(margin.entry.text(), QStringLiteral("5"));
  EXPECT_EQ(margin.history.crop().left, 5);
}

TEST(MarginEntry, UnreadableTextGivesWayToTheNumber) {
  for (const QString& text : {QString(), QStringLiteral("abc"), QStringLiteral("8.5")}) {
    Margin margin(12);
    margin.entry.begin();
    margin.entry.type(text);
    margin.entry.end();
    EXPECT_EQ(margin.entry.text(), QStringLiteral("12"));
    EXPECT_TRUE(margin.taken.empty());
    EXPECT_FALSE(margin.history.canUndo());
  }
}

TEST(MarginEntry, ArrowsStepByThePixelStepAndByTenWithShift) {
  Margin margin(50);
  margin.entry.begin();
  margin.entry.press(Qt::Key_Up, Qt::NoModifier);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("52"));
  margin.entry.press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("62"));
  margin.entry.press(Qt::Key_Down, Qt::KeypadModifier);
  margin.entry.press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("50"));
  margin.history.setPixelStep(1);
  margin.entry.press(Qt::Key_Down, Qt::NoModifier);
  EXPECT_EQ(margin.taken, (std::vector<int64_t>{52, 62, 60, 50, 49}));
}

TEST(MarginEntry, ArrowsStopAtTheLimit) {
  Margin margin(100);
  margin.entry.begin();
  margin.entry.press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("100"));
}

TEST(MarginEntry, ArrowStepsTheValueUnderAnUnreadableText) {
  Margin margin(12);
  margin.entry.begin();
  margin.entry.type(QStringLiteral("abc"));
  margin.entry.press(Qt::Key_Up, Qt::NoModifier);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("14"));
}

TEST(MarginEntry, ArrowsDoNotLeave64Bits) {
  EditHistory history;
  MarginEntry entry(history, [](int64_t) {});
  entry.setValue(kHighest);
  entry.press(Qt::Key_Up, Qt::NoModifier);
  EXPECT_EQ(entry.value(), kHighest);
}

TEST(MarginEntry, OnePeriodOfFocusIsOneStep) {
  Margin margin(0);
  margin.entry.begin();
  margin.entry.type(QStringLiteral("1"));
  margin.entry.type(QStringLiteral("12"));
  margin.entry.press(Qt::Key_Up, Qt::NoModifier);
  margin.entry.end();
  EXPECT_EQ(margin.history.manager().count(), 1);
  margin.history.undo();
  EXPECT_EQ(margin.history.crop(), CropMargins());
}

TEST(MarginEntry, ReturnCorrectsTheTextAndClosesTheStep) {
  Margin margin(0);
  margin.entry.begin();
  margin.entry.type(QStringLiteral("5000"));
  margin.entry.press(Qt::Key_Return, Qt::NoModifier);
  EXPECT_EQ(margin.entry.text(), QStringLiteral("100"));
  EXPECT_EQ(margin.history.manager().count(), 1);
}

TEST(MarginEntry, TextSetWithoutTheFocusIsTakenAndCorrected) {
  Margin margin(0);
  margin.entry.type(QStringLiteral("5000"));
  EXPECT_EQ(margin.entry.text(), QStringLiteral("100"));
  margin.entry.type(QStringLiteral("x"));
  EXPECT_EQ(margin.entry.text(), QStringLiteral("100"));
}

TEST(DimensionEntry, TypingChangesNothing) {
  Dimension width(640);
  width.entry.begin();
  width.entry.type(QStringLiteral("800"));
  EXPECT_TRUE(width.taken.empty());
  width.entry.end();
  EXPECT_EQ(width.taken, (std::vector<int64_t>{800}));
  EXPECT_EQ(width.rejections, 0);
}

TEST(DimensionEntry, UntouchedTextIsNotTaken) {
  Dimension width(640);
  width.entry.begin();
  width.entry.setValue(320);
  width.entry.end();
  EXPECT_TRUE(width.taken.empty());
  EXPECT_EQ(width.entry.text(), QStringLiteral("320"));
}

TEST(DimensionEntry, ReturnIsAStepAndEditingGoesOn) {
  Dimension width(640);
  width.entry.begin();
  width.entry.type(QStringLiteral("801"));
  width.entry.press(Qt::Key_Return, Qt::NoModifier);
  EXPECT_EQ(width.entry.text(), QStringLiteral("800"));
  EXPECT_EQ(width.history.manager().count(), 1);
  EXPECT_TRUE(width.entry.isEditing());
  width.entry.type(QStringLiteral("802"));
  width.entry.press(Qt::Key_Up, Qt::NoModifier);
  EXPECT_EQ(width.history.manager().count(), 1);
  width.entry.end();
  EXPECT_EQ(width.history.manager().count(), 2);
}

TEST(DimensionEntry, RejectedTextsAreTold) {
  Dimension width(640);
  width.entry.begin();
  width.entry.type(QStringLiteral("1"));
  width.entry.press(Qt::Key_Return, Qt::NoModifier);
  EXPECT_EQ(width.entry.text(), QStringLiteral("2"));
  EXPECT_EQ(width.rejections, 1);
  width.entry.type(QStringLiteral("abc"));
  width.entry.press(Qt::Key_Enter, Qt::NoModifier);
  EXPECT_EQ(width.entry.text(), QStringLiteral("2"));
  EXPECT_EQ(width.rejections, 2);
}

TEST(DimensionEntry, ArrowsCommitFirstAndThenStep) {
  Dimension width(640);
  width.entry.begin();
  width.entry.type(QStringLiteral("800"));
  width.entry.press(Qt::Key_Up, Qt::NoModifier);
  EXPECT_EQ(width.taken, (std::vector<int64_t>{800, 802}));
  width.entry.press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(width.taken.back(), 792);
  EXPECT_EQ(width.rejections, 0);
}

TEST(DimensionEntry, SteppingBeyondALimitIsRejected) {
  Dimension width(1920);
  width.entry.begin();
  width.entry.press(Qt::Key_Up, Qt::NoModifier);
  EXPECT_EQ(width.rejections, 1);
  EXPECT_EQ(width.entry.text(), QStringLiteral("1920"));
}

}  // namespace
}  // namespace vantrel
