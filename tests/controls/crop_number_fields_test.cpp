#include <gtest/gtest.h>

#include <QAccessible>
#include <QClipboard>
#include <QFontInfo>
#include <QImage>
#include <QProxyStyle>
#include <QShortcut>
#include <QSignalSpy>
#include <QWheelEvent>
#include <algorithm>
#include <vector>

#include "controls/field_window.h"

namespace vantrel {
namespace {

/// A FieldWindow that has the keyboard; its crop goes by `step` pixels.
template <int64_t step>
class FieldWindowTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(fields.isReady()); }

  FieldWindow fields{step};
};
class CropNumberFields : public FieldWindowTest<2> {};
class CropNumberFieldByOne : public FieldWindowTest<1> {};
class CropNumberFieldByTwo : public FieldWindowTest<2> {};
class CropDimensionFieldTest : public FieldWindowTest<2> {};

TEST_F(CropNumberFields, AreDescribed) {
  EXPECT_EQ(fields.left.accessibleName(), QStringLiteral("Left crop margin in pixels"));
  EXPECT_EQ(fields.width.accessibleName(), QStringLiteral("Crop width in pixels"));
  for (const QLineEdit* const field :
       {static_cast<QLineEdit*>(&fields.left), static_cast<QLineEdit*>(&fields.width)}) {
    EXPECT_EQ(field->toolTip(), QStringLiteral("Pixels"));
    EXPECT_EQ(field->placeholderText(), QStringLiteral("—"));
  }
}

TEST_F(CropNumberFields, ShowThePlaceholderWithoutAFile) {
  EXPECT_EQ(fields.left.text(), QStringLiteral("0"));
  fields.left.setShowsPlaceholder(true);
  fields.left.setValue(3);
  EXPECT_EQ(fields.left.text(), QString());
  fields.left.setShowsPlaceholder(false);
  EXPECT_EQ(fields.left.text(), QStringLiteral("3"));
}

TEST_F(CropNumberFields, FirstClickSelectsAllAndTheSecondPlacesTheCaret) {
  fields.left.setValue(120);
  QTest::mouseClick(&fields.left, Qt::LeftButton, {}, QPoint(8, fields.left.height() / 2));
  EXPECT_TRUE(fields.left.hasFocus());
  EXPECT_EQ(fields.left.selectedText(), QStringLiteral("120"));
  QTest::mouseClick(&fields.left, Qt::LeftButton, {}, QPoint(8, fields.left.height() / 2));
  EXPECT_FALSE(fields.left.hasSelectedText());
}

TEST_F(CropNumberFields, PressThatComesBeforeTheFocusSelectsAll) {
  fields.left.setValue(120);
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  const QPoint start(8, fields.left.height() / 2);
  QTest::mouseClick(&fields.left, Qt::LeftButton, {}, start);
  ASSERT_FALSE(fields.left.isEditing());
  EXPECT_EQ(fields.left.selectedText(), QStringLiteral("120"));
  fields.window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&fields.window));
  EXPECT_EQ(fields.left.selectedText(), QStringLiteral("120"));
  QTest::mouseClick(&fields.left, Qt::LeftButton, {}, start);
  EXPECT_FALSE(fields.left.hasSelectedText());
}

TEST_F(CropNumberFields, ShowAllDigitsOfAWideNumber) {
  const QFont own = fields.left.font();
  const auto isWhole = [this] {
    // Scrolled or cut off, a text looks the same whatever stands out of sight.
    const QImage shown = fields.left.grab().toImage();
    fields.left.setCursorPosition(0);
    return fields.left.grab().toImage() == shown;
  };
  fields.left.setFixedWidth(50);
  for (const int64_t value : {100020, 65535, 4321}) {
    fields.left.setValue(value);
    EXPECT_TRUE(isWhole()) << value;
  }
  fields.left.setValue(12345678);
  EXPECT_LT(QFontInfo(fields.left.font()).pixelSize(), QFontInfo(own).pixelSize());
  fields.left.setFixedWidth(200);
  EXPECT_EQ(fields.left.font(), own);
  fields.left.setFixedWidth(50);
  EXPECT_NE(fields.left.font(), own);
  fields.left.setValue(7);
  EXPECT_EQ(fields.left.font(), own);
}

TEST_F(CropNumberFields, FollowAFontThatLeavesLessRoom) {
  fields.left.setFixedWidth(50);
  fields.left.setValue(432);
  QFont large = fields.left.font();
  large.setPixelSize(40);
  fields.left.setFont(large);
  EXPECT_LT(fields.left.font().pixelSize(), 40);
  fields.left.setValue(1);
  EXPECT_EQ(fields.left.font().pixelSize(), 40);
}

TEST_F(CropNumberFields, LeaveTheWheelToWhatTheyLieIn) {
  for (SelectingNumberField* const field : {static_cast<SelectingNumberField*>(&fields.left),
                                            static_cast<SelectingNumberField*>(&fields.width)}) {
    field->setFocus();
    const QString before = field->text();
    const QPointF place = field->rect().center();
    QWheelEvent event(place, field->mapToGlobal(place), {}, QPoint(0, 120), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(field, &event);
    EXPECT_FALSE(event.isAccepted());
    EXPECT_EQ(field->text(), before);
  }
  EXPECT_EQ(fields.steps(), 0);
}

TEST_F(CropNumberFields, OtherKeysAndOddTextsChangeNothing) {
  const QString texts[] = {QStringLiteral("\u0663\u0662"),  // Digits of another script.
                           QStringLiteral("12px"),         QStringLiteral(" 12"),
                           QStringLiteral("1,200"),        QStringLiteral("1e3"),
                           QString(100'000, u'9')};
  fields.left.setFocus();
  for (const QString& text : texts) {
    fields.left.selectAll();
    QGuiApplication::clipboard()->setText(text);
    fields.left.paste();
    EXPECT_EQ(fields.history.crop().left, 0) << text.left(20).toStdString();
  }
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home})
    QTest::keyClick(&fields.left, key);
  QTest::keyClick(&fields.left, Qt::Key_Up, Qt::ControlModifier);
  EXPECT_TRUE(fields.left.isEditing());
  fields.leave();
  EXPECT_EQ(fields.left.text(), QStringLiteral("0"));
  EXPECT_EQ(fields.steps(), 0);
}

TEST_F(CropNumberFields, OnlyTheLeftButtonSelectsAll) {
  fields.left.setValue(120);
  const QPoint start(8, fields.left.height() / 2);
  QTest::mousePress(&fields.left, Qt::RightButton, {}, start);
  QTest::mouseRelease(&fields.left, Qt::RightButton, {}, start);
  QTest::mouseClick(&fields.left, Qt::LeftButton, {}, start);
  EXPECT_TRUE(fields.left.hasFocus());
  EXPECT_FALSE(fields.left.hasSelectedText());
}

TEST_F(CropNumberFields, TakeNoClickWithoutAFile) {
  for (SelectingNumberField* const field : {static_cast<SelectingNumberField*>(&fields.left),
                                            static_cast<SelectingNumberField*>(&fields.width)}) {
    field->setShowsPlaceholder(true);
    field->setEnabled(false);
    QTest::mouseClick(field, Qt::LeftButton);
    EXPECT_FALSE(field->isEditing());
    EXPECT_EQ(field->text(), QString());
  }
  EXPECT_TRUE(fields.plain.hasFocus());
}

TEST_F(CropNumberFieldByOne, EndsEditingWhenDeletedWithTheFocus) {
  auto* const extra = new CropNumberField(fields.history, QStringLiteral("Top"), &fields.window);
  QObject::connect(extra, &CropNumberField::valueEdited, &fields.window, [this](int64_t value) {
    fields.history.setCrop({0, value, 0, 0});
  });
  extra->show();
  extra->setFocus();
  QTest::keyClick(extra, '7');
  EXPECT_EQ(fields.steps(), 0);
  delete extra;
  EXPECT_EQ(fields.steps(), 1);
  EXPECT_EQ(fields.history.crop().top, 7);
}

TEST_F(CropNumberFields, FirstClickThatMovesStillSelectsAll) {
  fields.left.setValue(120);
  const QPoint start(8, 4);
  QTest::mousePress(&fields.left, Qt::LeftButton, {}, start);
  QMouseEvent move(QEvent::MouseMove, QPointF(start + QPoint(4, 0)),
                   fields.left.mapToGlobal(QPointF(start)), Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(&fields.left, &move);
  EXPECT_EQ(fields.left.selectedText(), QStringLiteral("120"));
  QTest::mouseRelease(&fields.left, Qt::LeftButton, {}, start);
  EXPECT_EQ(fields.left.selectedText(), QStringLiteral("120"));
}

TEST_F(CropNumberFields, ClickAfterTabPlacesTheCaret) {
  fields.left.setValue(120);
  fields.left.setFocus(Qt::TabFocusReason);
  EXPECT_EQ(fields.left.selectedText(), QStringLiteral("120"));
  QTest::mouseClick(&fields.left, Qt::LeftButton, {}, QPoint(8, fields.left.height() / 2));
  EXPECT_FALSE(fields.left.hasSelectedText());
}

TEST_F(CropNumberFieldByOne, TypingMovesTheCropAndUndoesInOneStep) {
  QSignalSpy moves(&fields.history, &EditHistory::cropChanged);
  fields.left.setFocus(Qt::TabFocusReason);
  QTest::keyClick(&fields.left, '1');
  EXPECT_EQ(fields.history.crop().left, 1);
  QTest::keyClick(&fields.left, '2');
  EXPECT_EQ(fields.history.crop().left, 12);
  EXPECT_EQ(moves.count(), 2);
  fields.leave();
  EXPECT_EQ(fields.steps(), 1);
  fields.history.undo();
  EXPECT_EQ(fields.history.crop().left, 0);
  EXPECT_EQ(fields.left.text(), QStringLiteral("0"));
}

TEST_F(CropNumberFieldByTwo, ClampedNumberShowsWhenEditingEnds) {
  fields.left.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.left, QStringLiteral("5000"));
  EXPECT_EQ(fields.left.text(), QStringLiteral("5000"));
  EXPECT_EQ(fields.history.crop().left, 1918);
  fields.leave();
  EXPECT_EQ(fields.left.text(), QStringLiteral("1918"));
}

TEST_F(CropNumberFieldByOne, ClearingAndLeavingRestoresTheNumber) {
  fields.left.setValue(7);
  fields.left.setFocus(Qt::TabFocusReason);
  QTest::keyClick(&fields.left, Qt::Key_Delete);
  EXPECT_EQ(fields.left.text(), QString());
  fields.leave();
  EXPECT_EQ(fields.left.text(), QStringLiteral("7"));
  EXPECT_EQ(fields.steps(), 0);
}

TEST_F(CropNumberFieldByOne, UnreadableTextGivesWayToTheNumberOnLeaving) {
  fields.left.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.left, QStringLiteral("abc"));
  EXPECT_EQ(fields.left.text(), QStringLiteral("abc"));
  fields.leave();
  EXPECT_EQ(fields.left.text(), QStringLiteral("0"));
  EXPECT_EQ(fields.steps(), 0);
}

TEST_F(CropNumberFieldByTwo, ArrowCorrectsAClampedTextAndStopsAtTheLimit) {
  fields.left.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.left, QStringLiteral("5000"));
  for (int press = 0; press < 2; ++press) {
    QTest::keyClick(&fields.left, Qt::Key_Up);
    EXPECT_EQ(fields.left.selectedText(), QStringLiteral("1918"));
    EXPECT_EQ(fields.history.crop().left, 1918);
  }
}

TEST_F(CropNumberFieldByTwo, ReturnCorrectsTheTextAndSelectsIt) {
  fields.left.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.left, QStringLiteral("5000"));
  QTest::keyClick(&fields.left, Qt::Key_Return);
  EXPECT_EQ(fields.left.selectedText(), QStringLiteral("1918"));
  EXPECT_EQ(fields.steps(), 1);
}

TEST_F(CropNumberFieldByTwo, ArrowsStepAndSelectTheNumber) {
  fields.left.setFocus();
  QTest::keyClick(&fields.left, Qt::Key_Up);
  EXPECT_EQ(fields.history.crop().left, 2);
  QTest::keyClick(&fields.left, Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(fields.left.selectedText(), fields.left.text());
  EXPECT_EQ(fields.left.text(), QStringLiteral("12"));
  EXPECT_EQ(fields.history.crop().left, 12);
  fields.leave();
  EXPECT_EQ(fields.steps(), 1);
}

TEST_F(CropNumberFieldByOne, EditedTextSurvivesAChangeFromElsewhere) {
  fields.left.setFocus();
  fields.history.setCrop({33, 0, 0, 0});
  EXPECT_EQ(fields.left.text(), QStringLiteral("0"));
  fields.leave();
  EXPECT_EQ(fields.left.text(), QStringLiteral("33"));
  EXPECT_EQ(fields.history.crop().left, 33);
}

TEST_F(CropNumberFieldByOne, DisablingEndsEditing) {
  fields.left.setFocus();
  QTest::keyClick(&fields.left, '4');
  fields.window.setEnabled(false);
  EXPECT_FALSE(fields.left.isEditing());
  EXPECT_EQ(fields.steps(), 1);
}

TEST_F(CropNumberFieldByOne, DisablingEndsEditingBehindAnotherWindow) {
  fields.left.setFocus();
  QTest::keyClick(&fields.left, '4');
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_TRUE(fields.left.isEditing());
  fields.left.setEnabled(false);
  EXPECT_FALSE(fields.left.isEditing());
  EXPECT_EQ(fields.steps(), 1);
}

TEST_F(CropNumberFieldByOne, FocusThatGoesElsewhereBehindAnotherWindowEndsEditing) {
  fields.left.setFocus();
  QTest::keyClick(&fields.left, '4');
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  // As a press does that comes before the window is active.
  fields.plain.setFocus(Qt::MouseFocusReason);
  fields.window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&fields.window));
  EXPECT_FALSE(fields.left.isEditing());
  EXPECT_EQ(fields.steps(), 1);
}

TEST_F(CropNumberFieldByOne, EditingGoesOnWhenItsWindowComesBack) {
  fields.left.setFocus();
  QTest::keyClick(&fields.left, '4');
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  fields.window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&fields.window));
  EXPECT_TRUE(fields.left.isEditing());
  QTest::keyClick(&fields.left, '2');
  fields.leave();
  EXPECT_EQ(fields.history.crop().left, 42);
  EXPECT_EQ(fields.steps(), 1);
}

TEST_F(CropNumberFieldByOne, HidingEndsEditing) {
  fields.left.setFocus();
  QTest::keyClick(&fields.left, '4');
  fields.window.hide();
  EXPECT_FALSE(fields.left.isEditing());
  EXPECT_EQ(fields.steps(), 1);
}

TEST_F(CropNumberFieldByOne, TakesANumberFromAnAssistiveTool) {
  QAccessibleInterface* const tool = QAccessible::queryAccessibleInterface(&fields.left);
  tool->setText(QAccessible::Value, QStringLiteral("40"));
  EXPECT_EQ(fields.history.crop().left, 40);
  tool->setText(QAccessible::Value, QStringLiteral("5000"));
  EXPECT_EQ(fields.left.text(), QStringLiteral("1920"));
  EXPECT_EQ(fields.steps(), 2);
}

TEST_F(CropNumberFieldByOne, MenuThatTakesTheFocusDoesNotEndEditing) {
  fields.left.setFocus();
  for (const auto reason : {Qt::PopupFocusReason, Qt::ActiveWindowFocusReason}) {
    QFocusEvent out(QEvent::FocusOut, reason);
    QApplication::sendEvent(&fields.left, &out);
    EXPECT_TRUE(fields.left.isEditing());
  }
  QFocusEvent out(QEvent::FocusOut, Qt::OtherFocusReason);
  QApplication::sendEvent(&fields.left, &out);
  EXPECT_FALSE(fields.left.isEditing());
}

TEST_F(CropNumberFieldByOne, UndoKeyWithNothingTypedBelongsToTheWindow) {
  QShortcut undo(QKeySequence::Undo, &fields.window);
  QSignalSpy activated(&undo, &QShortcut::activated);
  fields.left.setFocus();
  QTest::keyClick(fields.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(activated.count(), 1);
  QTest::keyClick(fields.window.windowHandle(), Qt::Key_5);
  QTest::keyClick(fields.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(activated.count(), 1) << "typing is undone in the field";
}

TEST_F(CropDimensionFieldTest, ReturnCommitsKeepsTheFocusAndSelects) {
  fields.width.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.width, QStringLiteral("801"));
  EXPECT_EQ(fields.size().width(), 1920);
  QTest::keyClick(&fields.width, Qt::Key_Return);
  EXPECT_EQ(fields.size().width(), 800);
  EXPECT_TRUE(fields.width.hasFocus());
  EXPECT_EQ(fields.width.selectedText(), QStringLiteral("800"));
  EXPECT_EQ(fields.steps(), 1);
  EXPECT_EQ(fields.width.flashOpacity(), 0);
  EXPECT_FALSE(fields.width.isUndoAvailable()) << "the entry is undone in the history now";
}

TEST_F(CropDimensionFieldTest, RejectedEntryFlashesRed) {
  const QImage calm = fields.width.grab().toImage();
  fields.width.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.width, QStringLiteral("1"));
  QTest::keyClick(&fields.width, Qt::Key_Return);
  EXPECT_EQ(fields.width.text(), QStringLiteral("2"));
  EXPECT_GT(fields.width.flashOpacity(), 0);
  const QColor border = fields.width.grab().toImage().pixelColor(fields.width.width() / 2, 0);
  const QColor before = calm.pixelColor(fields.width.width() / 2, 0);
  EXPECT_GT(border.red() - border.blue(), before.red() - before.blue() + 50);
  EXPECT_TRUE(QTest::qWaitFor([&] { return fields.width.flashOpacity() <= 0; }));
}

TEST_F(CropDimensionFieldTest, AFlashFadesEvenlyInSevenTenthsOfASecond) {
  const auto border = [&] {
    return fields.width.grab().toImage().pixelColor(fields.width.width() / 2, 0);
  };
  const QColor calm = border();
  fields.width.flashValidation();
  fields.width.flash().setCurrentTime(0);
  EXPECT_EQ(fields.width.flashOpacity(), 1);
  EXPECT_EQ(border(), QColor(255, 59, 48));
  fields.width.flash().setCurrentTime(175);
  EXPECT_DOUBLE_EQ(fields.width.flashOpacity(), 0.75);
  fields.width.flash().setCurrentTime(350);
  EXPECT_DOUBLE_EQ(fields.width.flashOpacity(), 0.5);
  EXPECT_NEAR(border().green(), (59 + calm.green()) / 2, 2);
  fields.width.flash().setCurrentTime(700);
  EXPECT_EQ(fields.width.flashOpacity(), 0);
  EXPECT_EQ(border(), calm);
}

TEST_F(CropDimensionFieldTest, ASecondFlashReplacesTheFirst) {
  fields.width.flashValidation();
  fields.width.flash().setCurrentTime(500);
  fields.width.flashValidation();
  EXPECT_GT(fields.width.flashOpacity(), 0.9);
}

TEST_F(CropDimensionFieldTest, NumberTooLongForAnyFileIsTheLargest) {
  for (const QString& text : {QString(100'000, u'9'), QStringLiteral("\u0663\u0662")}) {
    fields.width.setFocus(Qt::TabFocusReason);
    fields.width.selectAll();
    QGuiApplication::clipboard()->setText(text);
    fields.width.paste();
    EXPECT_EQ(fields.steps(), 0);
    QTest::keyClick(&fields.width, Qt::Key_Return);
    EXPECT_EQ(fields.width.text(), QStringLiteral("1920"));
    EXPECT_GT(fields.width.flashOpacity(), 0);
  }
}

class StillStyle final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    if (hint == SH_Widget_Animation_Duration) return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
  }
};

TEST_F(CropDimensionFieldTest, AFlashDoesNotFadeWhereNothingIsToMove) {
  StillStyle still;
  fields.width.setStyle(&still);
  fields.width.flashValidation();
  std::vector<double> opacities;
  ASSERT_TRUE(QTest::qWaitFor([&] {
    opacities.push_back(fields.width.flashOpacity());
    return opacities.back() == 0;
  }));
  opacities.pop_back();
  ASSERT_FALSE(opacities.empty());
  EXPECT_EQ(std::count(opacities.begin(), opacities.end(), 1), static_cast<long>(opacities.size()));
  fields.width.setStyle(nullptr);
}

TEST_F(CropDimensionFieldTest, ArrowAtTheLimitFlashes) {
  fields.width.setFocus();
  QTest::keyClick(&fields.width, Qt::Key_Up);
  EXPECT_EQ(fields.width.selectedText(), QStringLiteral("1920"));
  EXPECT_GT(fields.width.flashOpacity(), 0);
  EXPECT_EQ(fields.steps(), 0);
}

TEST_F(CropDimensionFieldTest, LeavingTakesATypedNumber) {
  fields.width.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.width, QStringLiteral("640"));
  EXPECT_EQ(fields.size().width(), 1920);
  fields.leave();
  EXPECT_EQ(fields.size().width(), 640);
  EXPECT_EQ(fields.steps(), 1);
}

TEST_F(CropDimensionFieldTest, UnreadableEntryFlashesAndChangesNothing) {
  fields.width.setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&fields.width, QStringLiteral("abc"));
  QTest::keyClick(&fields.width, Qt::Key_Return);
  EXPECT_EQ(fields.width.text(), QStringLiteral("1920"));
  EXPECT_GT(fields.width.flashOpacity(), 0);
  fields.leave();
  EXPECT_EQ(fields.steps(), 0);
}

}  // namespace
}  // namespace vantrel
