#include "controls/color_well.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

namespace vantrel {
namespace {

class ColorWellTest : public ::testing::Test {
 protected:
  void SetUp() override {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    well.setColor(QColor(10, 20, 30));
    well.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&well));
  }
  QColorDialog* ask() {
    QTest::mouseClick(&well, Qt::LeftButton);
    return well.dialog();
  }

  ColorWell well{QStringLiteral("Background")};
  QSignalSpy chosen{&well, &ColorWell::colorChosen};
};

TEST_F(ColorWellTest, ShowsItsColor) {
  EXPECT_EQ(well.grab().toImage().pixelColor(well.rect().center()), QColor(10, 20, 30));
  EXPECT_EQ(well.accessibleName(), QStringLiteral("Background"));
  EXPECT_EQ(well.accessibleDescription(), QStringLiteral("#0A141E"));
}

TEST_F(ColorWellTest, AsksForAnOpaqueColor) {
  QColorDialog* const dialog = ask();
  ASSERT_NE(dialog, nullptr);
  EXPECT_FALSE(dialog->testOption(QColorDialog::ShowAlphaChannel));
  EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Background"));
  EXPECT_EQ(dialog->currentColor(), QColor(10, 20, 30));
  dialog->setCurrentColor(QColor(200, 100, 50));
  EXPECT_EQ(chosen.count(), 0);
  dialog->accept();
  ASSERT_EQ(chosen.count(), 1);
  EXPECT_EQ(chosen.first().first().value<QColor>(), QColor(200, 100, 50));
  EXPECT_TRUE(QTest::qWaitFor([this] { return !well.dialog(); }));
}

TEST_F(ColorWellTest, KeepsItsColorWhenTheDialogIsCancelled) {
  QColorDialog* const dialog = ask();
  ASSERT_NE(dialog, nullptr);
  dialog->setCurrentColor(QColor(200, 100, 50));
  dialog->reject();
  EXPECT_EQ(chosen.count(), 0);
  EXPECT_EQ(well.color(), QColor(10, 20, 30));
}

TEST_F(ColorWellTest, AsksNoMoreOnceItIsDisabled) {
  ASSERT_NE(ask(), nullptr);
  well.setEnabled(false);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !well.dialog(); }));
  EXPECT_EQ(chosen.count(), 0);
  EXPECT_EQ(ask(), nullptr);
}

TEST_F(ColorWellTest, IsPressedByTheKeyboard) {
  well.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&well));
  well.setFocus();
  QTest::keyClick(&well, Qt::Key_Space);
  ASSERT_NE(well.dialog(), nullptr);
  well.dialog()->reject();
}

}  // namespace
}  // namespace vantrel
