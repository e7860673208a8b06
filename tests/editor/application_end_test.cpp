#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "editor/tabbed_windows.h"
#include "editor/waiting_exports.h"

namespace vantrel {
namespace {

/// Runs the application until it ends by itself.
class ApplicationEndTest : public testing::TabbedWindows {
 protected:
  void SetUp() override {
    TabbedWindows::SetUp();
    QApplication::setQuitOnLastWindowClosed(true);
    // An end before this one took the folder with it.
    std::filesystem::create_directories(ExportTemporaryStorage::shared().directory());
    m_alarm.setSingleShot(true);
    QObject::connect(&m_alarm, &QTimer::timeout, qApp, [this] {
      m_expired = true;
      QCoreApplication::exit();
    });
    m_alarm.start(60'000);
  }
  void TearDown() override {
    QApplication::setQuitOnLastWindowClosed(false);
    TabbedWindows::TearDown();
  }

  /// Does `step` as soon as `condition` holds, while the application runs.
  void when(std::function<bool()> condition, std::function<void()> step) {
    auto* const timer = new QTimer(&m_alarm);
    QObject::connect(timer, &QTimer::timeout, timer, [=] {
      if (!condition()) return;
      timer->stop();
      step();
    });
    timer->start(5);
  }
  bool endsByItself() {
    QApplication::exec();
    return !m_expired;
  }
  template <class Widget>
  static Widget* shown() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      auto* const match = qobject_cast<Widget*>(widget);
      if (match && match->isVisible()) return match;
    }
    return nullptr;
  }

 private:
  QTimer m_alarm;
  bool m_expired = false;
};

TEST_F(ApplicationEndTest, TheLastWindowOfEitherKindEndsIt) {
  EditorWindow* const editor = windows.openEditor();
  ReviewWindow* const review = windows.openReview(
      {TemporaryExport(folder / "other.png"), {}, ContentType::png(), QStringLiteral("other")});
  bool reviewOutlivedTheEditor = false;
  when([&] { return editor->isVisible() && review->isVisible(); }, [&] { editor->close(); });
  when([&] { return editorWindows().isEmpty(); },
       [&] {
         QCoreApplication::processEvents();
         reviewOutlivedTheEditor = review->isVisible();
         review->close();
       });
  when([] { return shown<QMessageBox>() != nullptr; },
       [] { shown<QMessageBox>()->button(QMessageBox::Discard)->click(); });
  EXPECT_TRUE(endsByItself());
  EXPECT_TRUE(reviewOutlivedTheEditor);
}

TEST_F(ApplicationEndTest, TheLastEditorEndsItAfterTheLastReview) {
  EditorWindow* const editor = openTabs(2);
  ReviewWindow* const review = openReview();
  bool editorOutlivedTheReview = false;
  when([&] { return review->isVisible(); }, [&] { review->close(); });
  when([] { return shown<QMessageBox>() != nullptr; },
       [] { shown<QMessageBox>()->button(QMessageBox::Discard)->click(); });
  when([] { return shown<ReviewWindow>() == nullptr; },
       [&] {
         editorOutlivedTheReview = editor->isVisible();
         editor->close();
       });
  EXPECT_TRUE(endsByItself());
  EXPECT_TRUE(editorOutlivedTheReview);
}

TEST_F(ApplicationEndTest, MovingTheOnlyTabOfAWindowDoesNotEndIt) {
  EditorWindow* const first = openTabs(1);
  EditorWindow* const second = openTabs(1);
  bool stayed = false;
  when([&] { return second->isVisible(); }, [&] { first->addEditor(second->view()); });
  when([&] { return first->editors().size() == 2; },
       [&] {
         QCoreApplication::processEvents();
         stayed = first->isVisible();
         first->close();
       });
  EXPECT_TRUE(endsByItself());
  EXPECT_TRUE(stayed);
}

TEST_F(ApplicationEndTest, QuittingInMidExportLeavesNothingBehind) {
  testing::savePng(folder / "large.png", 4000, 3000);
  const std::filesystem::path session = ExportTemporaryStorage::shared().directory();
  EditorWindow* const window = openTabs(2);
  ASSERT_TRUE(load(window->view(), folder / "large.png"));
  QPointer<EditorView> exporting = window->view();
  QPointer<EditorView> loading = window->editors().last();
  when([&] { return window->isVisible(); },
       [&] {
         exporting->exports().exportMedia();
         loading->loader().loadMedia(folder / "large.png");
         windows.quit();
       });
  EXPECT_TRUE(endsByItself());
  EXPECT_TRUE(exporting.isNull());
  EXPECT_TRUE(loading.isNull());
  EXPECT_EQ(shown<ReviewWindow>(), nullptr);
  EXPECT_FALSE(std::filesystem::exists(session));
  EXPECT_EQ(testing::namesIn(folder.path()),
            (std::vector<std::string>{"large.png", "other.png", "photo.png"}));
}

TEST_F(ApplicationEndTest, AnEndAsksNothingAndLeavesNothingBehind) {
  testing::savePng(folder / "large.png", 4000, 3000);
  const std::filesystem::path session = ExportTemporaryStorage::shared().directory();
  EditorWindow* const window = openTabs(1);
  ASSERT_TRUE(load(window->view(), folder / "large.png"));
  QPointer<ReviewWindow> saving = windows.openReview(
      {TemporaryExport(folder / "photo.png"), {}, ContentType::png(), QStringLiteral("first")});
  QPointer<ReviewWindow> asking = windows.openReview(
      {TemporaryExport(folder / "other.png"), {}, ContentType::png(), QStringLiteral("second")});
  when([&] { return asking->isVisible(); }, [&] { windows.quit(); });
  when([] { return shown<QMessageBox>() != nullptr; },
       [&] {
         window->view()->exports().exportMedia();
         saving->save();
         windows.end();
       });
  EXPECT_TRUE(endsByItself());
  EXPECT_TRUE(saving.isNull());
  EXPECT_TRUE(asking.isNull());
  EXPECT_FALSE(std::filesystem::exists(session));
  EXPECT_EQ(testing::namesIn(folder.path()), (std::vector<std::string>{"large.png"}));
}

TEST_F(ApplicationEndTest, QuittingTakesAlertsAndFileDialogsAlong) {
  EditorWindow* const first = openTabs(2);
  EditorWindow* const second = openTabs(1);
  when([&] { return first->isVisible() && second->isVisible(); },
       [&] {
         first->view()->openMedia();
         second->view()->state().setOpenError(QStringLiteral("No."));
       });
  when([] { return shown<QFileDialog>() && shown<QMessageBox>(); }, [&] { windows.quit(); });
  EXPECT_TRUE(endsByItself());
  EXPECT_EQ(shown<QFileDialog>(), nullptr);
  EXPECT_EQ(shown<QMessageBox>(), nullptr);
}

TEST_F(ApplicationEndTest, QuittingTwiceAsksOnceForEachReview) {
  EditorWindow* const editor = openTabs(1);
  for (const char* name : {"photo.png", "other.png"}) {
    windows.openReview({TemporaryExport(folder / name), {}, ContentType::png(), QString()});
  }
  int questions = 0;
  when([] { return shown<ReviewWindow>() != nullptr; }, [&] { windows.quit(); });
  for (int review = 0; review < 2; ++review) {
    when([&, review] { return questions == review && shown<QMessageBox>() != nullptr; },
         [&] {
           ++questions;
           // As the desktop does.
           QEvent wish(QEvent::Quit);
           QCoreApplication::sendEvent(qApp, &wish);
           EXPECT_TRUE(editor->isVisible());
           EXPECT_TRUE(shown<QMessageBox>());
           if (auto* const question = shown<QMessageBox>())
             question->button(QMessageBox::Discard)->click();
         });
  }
  EXPECT_TRUE(endsByItself());
  EXPECT_EQ(questions, 2);
  EXPECT_FALSE(std::filesystem::exists(folder / "photo.png"));
}

TEST_F(ApplicationEndTest, AReviewThatOpensWhileQuittingAsksIsAskedForToo) {
  openTabs(1);
  windows.openReview(
      {TemporaryExport(folder / "photo.png"), {}, ContentType::png(), QStringLiteral("first")});
  int questions = 0;
  when([] { return shown<ReviewWindow>() != nullptr; }, [&] { windows.quit(); });
  when([] { return shown<QMessageBox>() != nullptr; },
       [&] {
         ++questions;
         QMessageBox* const question = shown<QMessageBox>();
         windows.openReview({TemporaryExport(folder / "other.png"),
                             {},
                             ContentType::png(),
                             QStringLiteral("second")});
         when([question] { return shown<QMessageBox>() && shown<QMessageBox>() != question; },
              [&] {
                ++questions;
                shown<QMessageBox>()->button(QMessageBox::Discard)->click();
              });
         question->button(QMessageBox::Discard)->click();
       });
  EXPECT_TRUE(endsByItself());
  EXPECT_EQ(questions, 2);
}

TEST_F(ApplicationEndTest, QuittingWhileAReviewAsksForAPlaceWaitsForIt) {
  EditorWindow* const editor = openTabs(1);
  ReviewWindow* const review = windows.openReview(
      {TemporaryExport(folder / "photo.png"), {}, ContentType::png(), QStringLiteral("kept")});
  bool stayed = false;
  when([&] { return review->isVisible(); }, [&] { review->save(); });
  when([] { return shown<QFileDialog>() != nullptr; },
       [&] {
         windows.quit();
         stayed = editor->isVisible() && review->isVisible();
         shown<QFileDialog>()->reject();
         when([] { return shown<QFileDialog>() == nullptr; },
              [&] {
                stayed = stayed && editor->isVisible() && review->isVisible();
                // Given up, it does not go on by itself.
                editor->close();
                when([&] { return shown<EditorWindow>() == nullptr; }, [&] { review->close(); });
                when([] { return shown<QMessageBox>() != nullptr; },
                     [] { shown<QMessageBox>()->button(QMessageBox::Discard)->click(); });
              });
       });
  EXPECT_TRUE(endsByItself());
  EXPECT_TRUE(stayed);
}

TEST_F(ApplicationEndTest, QuittingTakesTheDialogOfASavedReviewAlong) {
  openTabs(1);
  ReviewWindow* const review = windows.openReview(
      {TemporaryExport(folder / "photo.png"), {}, ContentType::png(), QStringLiteral("kept")});
  when([&] { return review->isVisible(); }, [&] { review->document().save(folder / "kept.png"); });
  when([&] { return !review->document().isUnsaved(); },
       [&] {
         review->save();
         when([] { return shown<QFileDialog>() != nullptr; }, [&] { windows.quit(); });
       });
  EXPECT_TRUE(endsByItself());
  EXPECT_TRUE(std::filesystem::exists(folder / "kept.png"));
}

}  // namespace
}  // namespace vantrel
