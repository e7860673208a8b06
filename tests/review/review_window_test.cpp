#include "review/review_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QToolButton>
#include <QWindow>
#include <cmath>

#include "controls/slim_progress_bar.h"
#include "playback/playback_state.h"
#include "review/export_information.h"
#include "review/held_copy.h"
#include "review/image_review_view.h"
#include "review/review_controls.h"
#include "review/save_dialog.h"
#include "review/save_progress_dialog.h"
#include "review/video_review_view.h"
#include "support/film_folder.h"
#include "support/picture_files.h"

namespace vantrel {
namespace {

class ReviewWindowTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    films = std::make_unique<testing::FilmFolder>();
    films->make("film.mov");
  }
  static void TearDownTestSuite() { films.reset(); }

  void open(const ContentType& type) {
    window = new ReviewWindow(std::make_unique<ExportReviewDocument>(
        FinishedExport{TemporaryExport(file), {}, type, QStringLiteral("film-framed")},
        &openMoviePlayer, copy));
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
  }
  void openFilm() {
    std::filesystem::copy_file(*films / "film.mov", file);
    open(ContentType::quickTimeMovie());
    ASSERT_NE(view(), nullptr);
    ASSERT_TRUE(QTest::qWaitFor([this] { return document().reviewPlayer() != nullptr; }));
  }
  ~ReviewWindowTest() override { delete window; }

  [[nodiscard]] ExportReviewDocument& document() { return window->document(); }
  [[nodiscard]] VideoReviewView* view() {
    return qobject_cast<VideoReviewView*>(window->centralWidget());
  }
  void press(Qt::Key key) { QTest::keyClick(window->windowHandle(), key); }

  static inline std::unique_ptr<testing::FilmFolder> films;
  testing::TemporaryFolder folder;
  std::filesystem::path file = folder / "Vantrel-1";
  CopyFile copy = &atomicCopy;
  QPointer<ReviewWindow> window;
};

TEST_F(ReviewWindowTest, ShowsAnImage) {
  testing::savePng(file, 4, 4);
  open(ContentType::png());
  EXPECT_NE(qobject_cast<ImageReviewView*>(window->centralWidget()), nullptr);
  EXPECT_EQ(document().reviewPlayer(), nullptr);
}

TEST_F(ReviewWindowTest, ShowsAPlayerForAnImageThatCannotBeRead) {
  testing::writeFile(file, "no picture");
  open(ContentType::png());
  ASSERT_NE(view(), nullptr);
  EXPECT_FALSE(view()->controls()->isEnabled());
}

TEST_F(ReviewWindowTest, PlaysAMovieWhenTheUserWantsIt) {
  openFilm();
  PlaybackState& playback = document().playback();
  EXPECT_DOUBLE_EQ(playback.duration(), 1);
  ASSERT_TRUE(QTest::qWaitFor([this] { return document().reviewPlayer()->picture() != nullptr; }));
  EXPECT_FALSE(playback.isPlaying());
  EXPECT_DOUBLE_EQ(playback.position(), 0);
  press(Qt::Key_Space);
  EXPECT_TRUE(playback.isPlaying());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !playback.isPlaying(); }, 60000));
  EXPECT_DOUBLE_EQ(playback.position(), 1);
}

TEST_F(ReviewWindowTest, StartsAMovieOverWhenItLoops) {
  openFilm();
  PlaybackState& playback = document().playback();
  document().toggleLoop();
  press(Qt::Key_Space);
  bool wasAtTheEnd = false;
  QObject::connect(document().reviewPlayer(), &Player::ended, window, [&] { wasAtTheEnd = true; });
  ASSERT_TRUE(QTest::qWaitFor(
      [&] {
        const double position = playback.position();
        return wasAtTheEnd && document().reviewPlayer()->rate() != 0 && position > 0 &&
               position < 1;
      },
      60000));
  EXPECT_TRUE(playback.isPlaying());
}

TEST_F(ReviewWindowTest, DeletesTheMovieThatItPlaysWhenItIsClosed) {
  openFilm();
  press(Qt::Key_Space);
  QSignalSpy saved(&document(), &ExportReviewDocument::saved);
  document().save(folder / "saved.mov");
  ASSERT_TRUE(saved.wait());
  EXPECT_TRUE(document().playback().isPlaying()) << "saving leaves the movie playing";
  window->close();
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>{"saved.mov"});
  ASSERT_TRUE(QTest::qWaitFor([this] { return window.isNull(); }));
}

TEST_F(ReviewWindowTest, DeletesAMovieThatIsNotSaved) {
  openFilm();
  press(Qt::Key_Space);
  window->close();
  auto* question = window->findChild<QMessageBox*>();
  ASSERT_NE(question, nullptr);
  EXPECT_NE(document().reviewPlayer(), nullptr) << "until it is answered";
  QTest::mouseClick(question->button(QMessageBox::Discard), Qt::LeftButton);
  ASSERT_TRUE(QTest::qWaitFor([this] { return window.isNull(); }));
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>());
}

TEST_F(ReviewWindowTest, FillsTheScreenWithoutItsMenuBar) {
  openFilm();
  window->menuBar()->addMenu(QStringLiteral("File"));
  press(Qt::Key_F);
  EXPECT_TRUE(window->isFullScreen());
  EXPECT_FALSE(window->menuBar()->isVisible());
  EXPECT_EQ(view()->controls()->fullScreenButton()->toolTip(), QStringLiteral("Exit Full Screen"));
  press(Qt::Key_Escape);
  EXPECT_FALSE(window->isFullScreen());
  EXPECT_TRUE(window->menuBar()->isVisible());
}

TEST_F(ReviewWindowTest, LeavesTheFullScreenOfAnImageWithEscape) {
  testing::savePng(file, 4, 4);
  open(ContentType::png());
  window->showFullScreen();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  QTest::keyClick(window, Qt::Key_Escape);
  EXPECT_FALSE(window->isFullScreen());
  EXPECT_TRUE(window->isVisible());
}

TEST_F(ReviewWindowTest, LeavesTheFullScreenWhereverTheKeyboardIs) {
  openFilm();
  for (QWidget* part : {static_cast<QWidget*>(view()->controls()->slider()),
                        static_cast<QWidget*>(view()->controls()->playButton())}) {
    press(Qt::Key_F);
    ASSERT_TRUE(window->isFullScreen());
    part->setFocus();
    press(Qt::Key_Escape);
    EXPECT_FALSE(window->isFullScreen());
    view()->setFocus();
  }
}

TEST_F(ReviewWindowTest, OpensWithItsContentAtTheRightSize) {
  testing::savePng(file, 4, 4);
  open(ContentType::png());
  EXPECT_EQ(window->centralWidget()->size(), QSize(800, 600));
}

TEST_F(ReviewWindowTest, GetsNoSmallerThanItsSummaryNeeds) {
  testing::savePng(file, 4, 4);
  open(ContentType::png());
  window->resize(1, 1);
  ASSERT_TRUE(QTest::qWaitFor([this] { return window->centralWidget()->width() < 400; }));
  EXPECT_EQ(window->centralWidget()->size(), QSize(300, 200));
  const auto* summary = window->findChild<ExportInformation*>();
  EXPECT_EQ(summary->pos(), QPoint(12, 12));
  EXPECT_LE(summary->geometry().right(), 300 - 12);
}

TEST_F(ReviewWindowTest, MarksItsTitleUntilItIsSaved) {
  testing::savePng(file, 4, 4);
  open(ContentType::png());
  EXPECT_EQ(window->windowHandle()->title(), QStringLiteral("film-framed*"));
  QSignalSpy saved(&document(), &ExportReviewDocument::saved);
  document().save(folder / "saved.png");
  ASSERT_TRUE(saved.wait());
  EXPECT_EQ(window->windowHandle()->title(), QStringLiteral("film-framed"));
}

class SlowSaveTest : public ReviewWindowTest {
 protected:
  /// A save that takes until the test has it end.
  void SetUp() override {
    testing::savePng(file, 64, 64);
    copy = held.copy();
    open(ContentType::png());
    document().save(folder / "a very good name.png");
  }
  [[nodiscard]] SaveProgressDialog* dialog() { return window->findChild<SaveProgressDialog*>(); }
  void waitForDialog() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return dialog()->isVisible(); }));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog()));
  }

  testing::HeldCopy held;
};

TEST_F(SlowSaveTest, ShowsHowFarItIs) {
  const auto size = static_cast<int64_t>(std::filesystem::file_size(file));
  EXPECT_FALSE(dialog()->isVisible());
  waitForDialog();
  EXPECT_EQ(dialog()->title()->text(), u"Saving “a very good name.png”…");
  EXPECT_EQ(dialog()->bar()->value(), 0);
  held.tell((size + 1) / 2);
  ASSERT_TRUE(QTest::qWaitFor([this] { return dialog()->bar()->value() > 0; }));
  EXPECT_EQ(dialog()->bar()->value(), dialog()->bar()->maximum() / 2);
  EXPECT_EQ(dialog()->windowModality(), Qt::WindowModal);
  held.tell(size);
  ASSERT_TRUE(QTest::qWaitFor([this] { return dialog()->bar()->maximum() == 0; }))
      << "how long the disk takes is not known";

  held.finish();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !document().isSaving(); }));
  EXPECT_FALSE(dialog()->isVisible());
  EXPECT_FALSE(document().isUnsaved());
}

TEST_F(SlowSaveTest, CanBeCancelled) {
  for (const bool byKey : {false, true}) {
    waitForDialog();
    if (byKey) {
      QTest::keyClick(dialog(), Qt::Key_Escape);
    } else {
      QTest::mouseClick(dialog()->cancelButton(), Qt::LeftButton);
    }
    EXPECT_FALSE(dialog()->cancelButton()->isEnabled());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !document().isSaving(); }));
    EXPECT_FALSE(dialog()->isVisible());
    EXPECT_TRUE(document().isUnsaved());
    EXPECT_EQ(window->findChild<QMessageBox*>(), nullptr) << "who cancels needs no message";
    EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>{"Vantrel-1"});
    document().save(folder / "a very good name.png");
  }
}

TEST_F(SlowSaveTest, CancelledAsTheAnswerToClosingKeepsTheWindow) {
  QSignalSpy refused(window, &ReviewWindow::closeRefused);
  window->close();
  EXPECT_TRUE(window->isVisible());
  waitForDialog();
  dialog()->close();
  ASSERT_TRUE(QTest::qWaitFor([&] { return refused.count() == 1; }));
  EXPECT_TRUE(window->isVisible());
  EXPECT_TRUE(document().isUnsaved());
}

TEST_F(SlowSaveTest, ClosesTheWindowAfterIt) {
  window->close();
  EXPECT_TRUE(window->isVisible());
  held.finish();
  ASSERT_TRUE(QTest::qWaitFor([this] { return window.isNull(); }));
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>{"a very good name.png"});
}

TEST_F(SlowSaveTest, KeepsALongNameInItsWidth) {
  held.finish();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !document().isSaving(); }));
  document().save(folder / (std::string(200, 'n') + ".png"));
  waitForDialog();
  const QLabel* title = dialog()->title();
  EXPECT_LE(title->sizeHint().width(), title->width());
  EXPECT_TRUE(title->text().contains(u"…"));
}

}  // namespace
}  // namespace vantrel
