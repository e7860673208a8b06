#include "review/video_review_view.h"

#include <gmock/gmock.h>

#include <QAction>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QPointer>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

#include "platform/gl/video_picture_maker.h"
#include "playback/playback_state.h"
#include "review/export_information.h"
#include "review/export_review_document.h"
#include "review/player_surface.h"
#include "review/review_controls.h"
#include "support/fake_player.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using ::testing::ElementsAre;
using testing::FakePlayer;
using ::testing::IsEmpty;

class VideoReviewViewTest : public ::testing::Test {
 protected:
  VideoReviewViewTest() {
    summary.codec = QStringLiteral("HEVC");
    summary.resolution = {64, 32};
    testing::writeFile(folder / "film.mov", "finished bytes");
    document = std::make_unique<ExportReviewDocument>(
        FinishedExport{TemporaryExport(folder / "film.mov"), summary, ContentType::quickTimeMovie(),
                       QStringLiteral("film-framed")},
        [this](const std::filesystem::path&, const std::stop_token&) -> MakePlayer {
          return [this] {
            auto made = std::make_unique<FakePlayer>();
            made->length = 45;
            player = made.get();
            return made;
          };
        });
    view = std::make_unique<VideoReviewView>(*document);
    view->resize(800, 600);
  }

  void open() {
    view->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view.get()));
    ASSERT_TRUE(QTest::qWaitFor([this] { return document->reviewPlayer() != nullptr; }));
    view->setFocus();
    player->log.clear();
  }
  ReviewControls& controls() { return *view->controls(); }
  /// As the window system tells it.
  void moveTo(const QPoint& place) { QTest::mouseMove(view->windowHandle(), place); }
  void press(Qt::Key key) { QTest::keyClick(view->windowHandle(), key); }
  /// The time of rest passes at once.
  void rest() {
    auto* timer = controls().findChild<QTimer*>();
    ASSERT_EQ(timer->interval(), ControlsVisibility::kRestMilliseconds);
    if (!timer->isActive()) return;
    QSignalSpy over(timer, &QTimer::timeout);
    timer->setInterval(0);
    ASSERT_TRUE(over.wait());
    timer->setInterval(ControlsVisibility::kRestMilliseconds);
  }
  void play() {
    document->playback().togglePlayback();
    QCoreApplication::processEvents();
    player->log.clear();
  }
  void playUntilTheControlsAreGone() {
    moveTo({5, 300});
    play();
    rest();
    ASSERT_FALSE(controls().areShown());
  }

  testing::TemporaryFolder folder;
  ExportSummary summary;
  QPointer<FakePlayer> player;
  std::unique_ptr<ExportReviewDocument> document;
  std::unique_ptr<VideoReviewView> view;
};

TEST_F(VideoReviewViewTest, IsDisabledUntilThereIsAPlayer) {
  EXPECT_FALSE(controls().isEnabled());
  open();
  EXPECT_TRUE(controls().isEnabled());
  EXPECT_THAT(player->log, IsEmpty()) << "nothing plays by itself";
  document->close();
  EXPECT_FALSE(controls().isEnabled());
}

TEST_F(VideoReviewViewTest, PlacesSummaryAndControls) {
  open();
  EXPECT_EQ(view->surface()->geometry(), view->rect());
  EXPECT_EQ(view->information()->pos(), QPoint(12, 12));
  EXPECT_EQ(view->information()->size(), view->information()->sizeHint());
  EXPECT_EQ(controls().geometry(), QRect(170, 538, 460, 38));
}

TEST_F(VideoReviewViewTest, KeepsWithinTheSmallestWindow) {
  view->resize(1, 1);
  open();
  ASSERT_EQ(view->size(), QSize(300, 200));
  EXPECT_EQ(view->information()->pos(), QPoint(12, 12));
  EXPECT_LE(view->information()->geometry().right(), 300 - 12);
  EXPECT_EQ(controls().geometry(), QRect(12, 138, 276, 38));
  EXPECT_TRUE(controls().rect().contains(controls().fullScreenButton()->geometry()));
  EXPECT_GT(controls().slider()->width(), 50);
}

TEST_F(VideoReviewViewTest, ShowsThePictureAsLargeAsFitsOnBlack) {
  open();
  // White, as samples of limited range.
  player->shownPicture = testing::makePicture(
      {.width = 64, .height = 32}, [](int plane, int, int) { return plane == 0 ? 235 : 128; });
  Q_EMIT player->pictureChanged();
  const QImage shown = view->surface()->grabFrame();
  const int edge = (shown.height() - shown.width() / 2) / 2;
  EXPECT_EQ(shown.pixelColor(0, edge), QColor(Qt::white));
  EXPECT_EQ(shown.pixelColor(shown.width() - 1, shown.height() - 1 - edge), QColor(Qt::white));
  EXPECT_EQ(shown.pixelColor(0, edge - 1), QColor(Qt::black));
  EXPECT_EQ(shown.pixelColor(shown.width() / 2, shown.height() - edge), QColor(Qt::black));
}

TEST_F(VideoReviewViewTest, ShowsATurnedPictureUpright) {
  open();
  auto picture = testing::makePicture({.width = 64, .height = 32},
                                      [](int plane, int, int) { return plane == 0 ? 235 : 128; });
  picture->preferredTransform = {0, 1, -1, 0, 32, 0};
  player->shownPicture = picture;
  Q_EMIT player->pictureChanged();
  const QImage shown = view->surface()->grabFrame();
  EXPECT_EQ(shown.pixelColor(shown.width() / 2, 0), QColor(Qt::white));
  EXPECT_EQ(shown.pixelColor(shown.width() / 4, shown.height() / 2), QColor(Qt::black));
}

TEST_F(VideoReviewViewTest, TellsTheTimeInWholeSeconds) {
  open();
  EXPECT_EQ(controls().elapsed()->text(), QStringLiteral("00:00"));
  EXPECT_EQ(controls().total()->text(), QStringLiteral("00:45"));
  Q_EMIT player->timeChanged(4.9);
  EXPECT_EQ(controls().elapsed()->text(), QStringLiteral("00:04"));
  EXPECT_EQ(controls().slider()->value(), 4.9 * 600);
}

TEST_F(VideoReviewViewTest, TellsHoursWhereTheMovieHasThem) {
  EXPECT_EQ(ReviewControls::timeText(0, 0), QStringLiteral("00:00"));
  EXPECT_EQ(ReviewControls::timeText(3599.9, 3599.9), QStringLiteral("59:59"));
  EXPECT_EQ(ReviewControls::timeText(4, 3600), QStringLiteral("0:00:04"));
  EXPECT_EQ(ReviewControls::timeText(3725, 40000), QStringLiteral("1:02:05"));
  EXPECT_EQ(ReviewControls::timeText(36000, 40000), QStringLiteral("10:00:00"));
}

TEST_F(VideoReviewViewTest, NamesItsParts) {
  open();
  for (const bool isPlaying : {false, true}) {
    const QString name = isPlaying ? QStringLiteral("Pause") : QStringLiteral("Play");
    EXPECT_EQ(controls().playButton()->accessibleName(), name);
    EXPECT_EQ(controls().playButton()->toolTip(), name);
    play();
  }
  for (const bool isFullScreen : {true, false}) {
    view->setFullScreen(isFullScreen);
    const QString name =
        isFullScreen ? QStringLiteral("Exit Full Screen") : QStringLiteral("Enter Full Screen");
    EXPECT_EQ(controls().fullScreenButton()->accessibleName(), name);
    EXPECT_EQ(controls().fullScreenButton()->toolTip(), name);
  }
  EXPECT_EQ(controls().slider()->accessibleName(), QStringLiteral("Playback position"));
  EXPECT_EQ(controls().moreButton()->accessibleName(), QStringLiteral("More"));
  EXPECT_EQ(controls().moreButton()->toolTip(), QStringLiteral("More"));
}

TEST_F(VideoReviewViewTest, SpacePlaysAndPauses) {
  open();
  press(Qt::Key_Space);
  press(Qt::Key_Space);
  EXPECT_THAT(player->log, ElementsAre("play", "pause"));
}

TEST_F(VideoReviewViewTest, ArrowKeysSeekASecond) {
  open();
  press(Qt::Key_Right);
  press(Qt::Key_Right);
  press(Qt::Key_Left);
  controls().slider()->setFocus();
  press(Qt::Key_Right);
  EXPECT_THAT(player->log, ElementsAre("seek 600/600 untold", "seek 1200/600 untold",
                                       "seek 600/600 untold", "seek 1200/600 untold"));
}

TEST_F(VideoReviewViewTest, AsksForFullScreenInEveryWay) {
  open();
  QSignalSpy requested(view.get(), &VideoReviewView::fullScreenRequested);
  press(Qt::Key_F);
  press(Qt::Key_F11);
  QTest::mouseClick(controls().fullScreenButton(), Qt::LeftButton);
  QTest::mouseDClick(view->surface(), Qt::LeftButton);
  press(Qt::Key_Escape);
  ASSERT_EQ(requested.count(), 4) << "Escape leaves it alone";
  for (const auto& arguments : requested)
    EXPECT_TRUE(arguments.first().toBool());

  requested.clear();
  view->setFullScreen(true);
  press(Qt::Key_Escape);
  press(Qt::Key_F);
  ASSERT_EQ(requested.count(), 2);
  for (const auto& arguments : requested)
    EXPECT_FALSE(arguments.first().toBool());
}

TEST_F(VideoReviewViewTest, KeysOfTheMenuAreNotItsOwn) {
  open();
  QSignalSpy requested(view.get(), &VideoReviewView::fullScreenRequested);
  QTest::keyClick(view->windowHandle(), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClick(view->windowHandle(), Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(requested.count(), 0);
  EXPECT_THAT(player->log, IsEmpty());
}

TEST_F(VideoReviewViewTest, TheMenuTogglesTheLoop) {
  open();
  QAction* const loop = controls().loopAction();
  EXPECT_EQ(loop->text(), QStringLiteral("Loop"));
  EXPECT_FALSE(loop->isChecked());
  loop->trigger();
  EXPECT_TRUE(document->loopEnabled());
  EXPECT_TRUE(loop->isChecked());
  loop->trigger();
  EXPECT_FALSE(document->loopEnabled());
  EXPECT_FALSE(loop->isChecked());
}

TEST_F(VideoReviewViewTest, TheControlsGoWhileItPlaysAndNothingMoves) {
  open();
  rest();
  EXPECT_TRUE(controls().areShown());
  playUntilTheControlsAreGone();
  EXPECT_EQ(view->cursor().shape(), Qt::BlankCursor);
  EXPECT_EQ(view->childAt(controls().geometry().center()), view->surface())
      << "what is not seen takes no clicks";
}

TEST_F(VideoReviewViewTest, APointerThatMovesBringsTheControlsBack) {
  open();
  playUntilTheControlsAreGone();
  moveTo({50, 300});
  EXPECT_TRUE(controls().areShown());
  EXPECT_EQ(view->cursor().shape(), Qt::ArrowCursor);
  EXPECT_TRUE(controls().isAncestorOf(view->childAt(controls().geometry().center())));
  rest();
  EXPECT_FALSE(controls().areShown());
}

TEST_F(VideoReviewViewTest, AnyKeyBringsTheControlsBack) {
  open();
  playUntilTheControlsAreGone();
  press(Qt::Key_X);
  EXPECT_TRUE(controls().areShown());
}

TEST_F(VideoReviewViewTest, TheControlsComeBackWhenItPauses) {
  open();
  playUntilTheControlsAreGone();
  player->setRate(0);
  QCoreApplication::processEvents();
  EXPECT_TRUE(controls().areShown());
  rest();
  EXPECT_TRUE(controls().areShown());
}

TEST_F(VideoReviewViewTest, TheControlsStayAwayWhenAMovieStartsOver) {
  open();
  document->toggleLoop();
  playUntilTheControlsAreGone();
  player->setRate(0);
  Q_EMIT player->ended();
  QCoreApplication::processEvents();
  EXPECT_FALSE(controls().areShown());
  player->land(true);
  QCoreApplication::processEvents();
  EXPECT_FALSE(controls().areShown());
}

TEST_F(VideoReviewViewTest, TheControlsStayUnderThePointer) {
  open();
  moveTo(controls().geometry().center());
  play();
  rest();
  EXPECT_TRUE(controls().areShown());
  moveTo({5, 300});
  rest();
  EXPECT_FALSE(controls().areShown());
}

TEST_F(VideoReviewViewTest, TheControlsStayWhileTheirMenuIsOpen) {
  open();
  moveTo({5, 300});
  play();
  QTest::mouseClick(controls().moreButton(), Qt::LeftButton);
  auto* const menu = qobject_cast<QWidget*>(controls().loopAction()->parent());
  ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
  rest();
  EXPECT_TRUE(controls().areShown());
  menu->close();
  rest();
  EXPECT_FALSE(controls().areShown());
}

class StillStyle final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    if (hint == SH_Widget_Animation_Duration) return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
  }
};

TEST_F(VideoReviewViewTest, TheControlsDoNotFadeWhereNothingIsToMove) {
  StillStyle still;
  controls().setStyle(&still);
  open();
  playUntilTheControlsAreGone();
  const auto* effect = qobject_cast<QGraphicsOpacityEffect*>(controls().graphicsEffect());
  ASSERT_NE(effect, nullptr);
  EXPECT_EQ(effect->opacity(), 0);
  moveTo({50, 300});
  EXPECT_EQ(controls().graphicsEffect(), nullptr);
}

}  // namespace
}  // namespace vantrel
