#include "editor/error_alert.h"

#include <gtest/gtest.h>

#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <functional>
#include <memory>
#include <vector>

namespace vantrel {
namespace {

class ErrorAlertTest : public ::testing::Test {
 protected:
  void SetUp() override {
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  }
  /// The alerts on the screen.
  QList<QMessageBox*> boxes() {
    QList<QMessageBox*> found = window.findChildren<QMessageBox*>();
    found.removeIf([](const QMessageBox* box) { return !box->isVisible(); });
    return found;
  }
  QMessageBox* say(const char* message) {
    alert->setMessage(QString::fromUtf8(message));
    return boxes().value(0);
  }

  QWidget window;
  std::unique_ptr<ErrorAlert> alert =
      std::make_unique<ErrorAlert>(QStringLiteral("Could Not Do It"), &window);
  QSignalSpy dismissed{alert.get(), &ErrorAlert::dismissed};
};

TEST_F(ErrorAlertTest, SaysWhatFailedAndWhy) {
  EXPECT_TRUE(boxes().isEmpty());
  QMessageBox* const box = say("There is no room.");
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->text(), QStringLiteral("Could Not Do It"));
  EXPECT_EQ(box->informativeText(), QStringLiteral("There is no room."));
  EXPECT_EQ(box->windowModality(), Qt::WindowModal);
  ASSERT_EQ(box->buttons().size(), 1);
  EXPECT_EQ(box->standardButton(box->buttons().first()), QMessageBox::Ok);
}

TEST_F(ErrorAlertTest, IsDismissedInAnyWay) {
  const std::vector<std::function<void(QMessageBox&)>> ways = {
      [](QMessageBox& box) { QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton); },
      [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); },
      [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); },
      [](QMessageBox& box) { box.close(); },
      [this](QMessageBox&) { alert->setMessage({}); },
  };
  int count = 0;
  for (const auto& dismiss : ways) {
    QMessageBox* const box = say("There is no room.");
    ASSERT_NE(box, nullptr);
    dismiss(*box);
    EXPECT_EQ(dismissed.count(), ++count);
    EXPECT_TRUE(boxes().isEmpty());
  }
}

TEST_F(ErrorAlertTest, TakesTheNewestWordsInsteadOfStandingTwice) {
  QMessageBox* const box = say("There is no room.");
  EXPECT_EQ(say("There is no file."), box);
  EXPECT_EQ(boxes().size(), 1);
  EXPECT_EQ(box->informativeText(), QStringLiteral("There is no file."));
  EXPECT_EQ(dismissed.count(), 0);
}

TEST_F(ErrorAlertTest, ComesToTheMiddleOfAWindowThatIsNotThereYet) {
  QWidget late;
  late.resize(600, 400);
  ErrorAlert early(QStringLiteral("Could Not Do It"), &late);
  late.show();
  early.setMessage(QStringLiteral("There is no room."));
  auto* const box = late.findChild<QMessageBox*>();
  ASSERT_NE(box, nullptr);
  EXPECT_FALSE(box->isVisible());
  ASSERT_TRUE(QTest::qWaitFor([&] { return box->isVisible(); }));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(box));
  constexpr int kFrames = 60;
  const auto offset = [&] {
    return (box->frameGeometry().center() - late.frameGeometry().center()).manhattanLength();
  };
  EXPECT_TRUE(QTest::qWaitFor([&] { return offset() < kFrames; })) << offset();
}

TEST_F(ErrorAlertTest, DoesNotComeForWhatIsSettledByThen) {
  QWidget late;
  ErrorAlert early(QStringLiteral("Could Not Do It"), &late);
  late.show();
  early.setMessage(QStringLiteral("There is no room."));
  early.setMessage({});
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&late));
  QCoreApplication::processEvents();
  for (const QMessageBox* box : late.findChildren<QMessageBox*>())
    EXPECT_FALSE(box->isVisible());
}

TEST_F(ErrorAlertTest, SaysTheNextOnceItIsDismissed) {
  QObject::connect(
      alert.get(), &ErrorAlert::dismissed, &window,
      [this] { alert->setMessage(QStringLiteral("And no file.")); }, Qt::SingleShotConnection);
  say("There is no room.")->accept();
  ASSERT_EQ(boxes().size(), 1);
  EXPECT_EQ(boxes().first()->informativeText(), QStringLiteral("And no file."));
}

}  // namespace
}  // namespace vantrel
