#include "controls/popover.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <memory>

namespace vantrel {
namespace {

/// A window with an anchor at its lower right and a popover over it.
class PopoverTest : public ::testing::Test {
 protected:
  void SetUp() override {
    window.resize(400, 300);
    anchor = std::make_unique<QPushButton>(&window);
    anchor->setGeometry(370, 270, 24, 24);
    below = new QPushButton(&window);
    below->setGeometry(0, 0, 60, 30);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    popover = new Popover(*anchor, new QLabel(QStringLiteral("One.\nTwo.")));
  }
  void TearDown() override { anchor.reset(); }
  bool isGone() {
    return QTest::qWaitFor([this] { return !popover; });
  }

  QWidget window;
  std::unique_ptr<QPushButton> anchor;
  QPushButton* below = nullptr;
  QPointer<Popover> popover;
};

TEST_F(PopoverTest, StandsAboveItsAnchorWithinTheWindow) {
  EXPECT_TRUE(popover->isVisible());
  EXPECT_LT(popover->geometry().bottom(), anchor->y());
  EXPECT_LE(popover->geometry().right(), window.width() - 8);
  EXPECT_TRUE(window.rect().contains(popover->geometry()));
  const auto* const label = popover->findChild<QLabel*>();
  EXPECT_EQ(label->mapTo(popover.data(), QPoint(0, 0)), QPoint(16, 16));
  EXPECT_EQ(popover->size(), label->size() + QSize(32, 32));
}

TEST_F(PopoverTest, FollowsItsAnchor) {
  window.resize(500, 360);
  anchor->move(470, 330);
  EXPECT_TRUE(QTest::qWaitFor([this] { return popover->geometry().bottom() > 300; }));
}

TEST_F(PopoverTest, GoesWithAClickBesideIt) {
  QSignalSpy clicked(below, &QPushButton::clicked);
  QTest::mouseClick(below, Qt::LeftButton);
  EXPECT_TRUE(isGone());
  EXPECT_EQ(clicked.count(), 1);
}

TEST_F(PopoverTest, StaysWithAClickInIt) {
  QTest::mouseClick(popover->findChild<QLabel*>(), Qt::LeftButton);
  QTest::mouseClick(popover.data(), Qt::RightButton);
  QCoreApplication::processEvents();
  EXPECT_TRUE(popover && popover->isVisible());
}

TEST_F(PopoverTest, LeavesAClickOnItsAnchorToTheAnchor) {
  QTest::mouseClick(anchor.get(), Qt::LeftButton);
  QCoreApplication::processEvents();
  ASSERT_TRUE(popover);
  popover->dismiss();
  EXPECT_TRUE(isGone());
}

TEST_F(PopoverTest, GoesWithEscapeBeforeAnyShortcut) {
  QAction action;
  action.setShortcut(Qt::Key_Escape);
  window.addAction(&action);
  QSignalSpy triggered(&action, &QAction::triggered);
  below->setFocus();
  QTest::keyClick(below, Qt::Key_Escape);
  EXPECT_TRUE(isGone());
  EXPECT_EQ(triggered.count(), 0);
  QTest::keyClick(below, Qt::Key_Escape);
  EXPECT_EQ(triggered.count(), 1);
}

TEST_F(PopoverTest, IsNotSeenWhileItsAnchorIsNot) {
  anchor->hide();
  EXPECT_FALSE(popover->isVisible());
  below->setFocus();
  QTest::keyClick(below, Qt::Key_Escape);
  QTest::mouseClick(below, Qt::LeftButton);
  ASSERT_TRUE(popover);
  anchor->show();
  EXPECT_TRUE(popover->isVisible());
}

TEST_F(PopoverTest, CaresNotForClicksInOtherWindows) {
  QPushButton other;
  other.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
  QTest::mouseClick(&other, Qt::LeftButton);
  QCoreApplication::processEvents();
  EXPECT_TRUE(popover && popover->isVisible());
}

TEST_F(PopoverTest, GoesWithItsAnchor) {
  anchor.reset();
  EXPECT_FALSE(popover);
}

}  // namespace
}  // namespace vantrel
