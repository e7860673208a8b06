#include "review/review_window.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QWindow>

#include "playback/playback_state.h"
#include "review/image_review_view.h"
#include "review/review_controls.h"
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
        FinishedExport{TemporaryExport(file), {}, type, QStringLiteral("film-framed")}));
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

}  // namespace
}  // namespace vantrel
