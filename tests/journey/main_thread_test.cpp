#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <filesystem>
#include <iostream>
#include <memory>

#include "canvas/canvas_scroll_view.h"
#include "canvas/video_canvas_view.h"
#include "editor/application_windows.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "platform/gl/picture_surface.h"
#include "review/image_review_view.h"
#include "review/review_window.h"
#include "support/film_folder.h"
#include "support/picture_files.h"
#include "support/turn_watch.h"

namespace vantrel {
namespace {

/// In milliseconds, in which work stops when it is asked to; all of it takes longer on any machine.
constexpr double kStopLimit = 500;
/// Bytes of the beginnings of files, of icons and fonts. Each file below is larger.
constexpr int64_t kReadLimit = 500'000;
constexpr int kWidth = 12'000, kHeight = 8'000;

ReviewWindow* openReview() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* review = qobject_cast<ReviewWindow*>(widget);
    if (review && review->isVisible()) return review;
  }
  return nullptr;
}

/// A window as it stands when a file comes, and what holds its main thread from then on.
class MainThreadTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_films = std::make_unique<testing::FilmFolder>();
    s_films->make("film.mov", {"-vf", "scale=1280:720,noise=alls=30"});
    testing::JpegSpec spec;
    spec.width = kWidth;
    spec.height = kHeight;
    spec.channels = 3;
    spec.quality = 90;
    spec.sample = [](int x, int y, int channel) {
      return static_cast<uint8_t>((x >> 4) * (channel + 1) + (y >> 3));
    };
    testing::saveBytes(*s_films / "large.jpg", testing::makeJpeg(spec));
    for (const char* name : {"film.mov", "large.jpg"}) {
      ASSERT_GT(std::filesystem::file_size(*s_films / name), 2 * kReadLimit) << name;
    }
  }
  static void TearDownTestSuite() { s_films.reset(); }

  void SetUp() override {
    std::ignore = PictureSurface::isSupported();
    editor = windows.openEditor();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(editor));
    ASSERT_TRUE(QTest::qWaitFor([this] { return editor->view()->canvas()->canvas()->hasFrame(); }));
    painting = testing::TurnWatch::paintingOf(*editor);
  }
  void TearDown() override {
    delete openReview();
    delete editor;
  }

  EditorState& state() { return editor->view()->state(); }
  /// Loads the file until its picture is on the screen.
  void load(const char* name) {
    watch.run([&] { editor->view()->loader().loadMedia(*s_films / name); });
    ASSERT_TRUE(watch.waitFor([this] {
      return state().loaded() && !state().busy() &&
             editor->view()->canvas()->canvas()->isPictureShown();
    }));
  }
  /// Exports until the review is there.
  void exportCrop() {
    watch.run([this] { editor->view()->exports().exportMedia(); });
    ASSERT_TRUE(state().busy());
    ASSERT_TRUE(watch.waitFor([] { return openReview() != nullptr; }));
  }
  void expectShortTurns(const char* what) {
    const testing::Turn& turn = watch.longest();
    if (editor) painting = testing::TurnWatch::paintingOf(*editor);
    std::cout << what << ": longest turns " << turn.processor << " ms of the main thread or "
              << turn.processor / painting << " paintings of the window, " << turn.blocked
              << " ms blocked, " << turn.wall << " ms in all; " << turn.read << " bytes read\n";
    EXPECT_LE(turn.processor, testing::TurnWatch::kMostPaintings * painting) << what;
    EXPECT_LE(turn.processor, testing::TurnWatch::kProcessorLimit) << what;
    EXPECT_LE(turn.read, kReadLimit) << what;
    watch = {};
  }

  static inline std::unique_ptr<testing::FilmFolder> s_films;
  ApplicationWindows windows;
  EditorWindow* editor = nullptr;
  testing::TurnWatch watch;
  /// Of the window, in milliseconds.
  double painting = 0;
};

TEST_F(MainThreadTest, IsFreeWhileALargeImageIsLoadedExportedAndReviewed) {
  load("large.jpg");
  expectShortTurns("loading an image");
  state().history().setCrop({101, 51, 7, 3});
  exportCrop();
  expectShortTurns("exporting an image");
  auto* const shown = qobject_cast<ImageReviewView*>(openReview()->centralWidget());
  ASSERT_NE(shown, nullptr);
  ASSERT_TRUE(watch.waitFor([&] { return shown->isImageShown(); }));
  expectShortTurns("reviewing an image");
}

TEST_F(MainThreadTest, IsFreeWhileAVideoIsLoadedExportedAndReviewed) {
  load("film.mov");
  expectShortTurns("loading a video");
  state().history().setCodec(EncodingSettings::Codec::h264);
  state().history().setCrop({100, 50, 6, 4});
  exportCrop();
  expectShortTurns("exporting a video");
  ExportReviewDocument& document = openReview()->document();
  ASSERT_TRUE(
      watch.waitFor([&] { return document.reviewPlayer() && document.reviewPlayer()->picture(); }));
  expectShortTurns("reviewing a video");
}

TEST_F(MainThreadTest, IsFreeWhenAnotherFileTakesThePlaceOfOne) {
  load("large.jpg");
  load("film.mov");
  load("large.jpg");
  expectShortTurns("replacing files");
  watch.run([this] { editor->view()->loader().closeMedia(); });
  ASSERT_TRUE(watch.waitFor([this] { return !state().loaded(); }));
  expectShortTurns("closing a file");
}

TEST_F(MainThreadTest, IsFreeWhenAnExportIsCancelled) {
  load("large.jpg");
  watch = {};
  watch.run([this] { editor->view()->exports().exportMedia(); });
  ASSERT_TRUE(state().busy());
  watch.run([this] { editor->view()->exports().cancel(); });
  ASSERT_TRUE(watch.waitFor([this] { return !state().busy(); }));
  expectShortTurns("cancelling an export");
}

TEST_F(MainThreadTest, IsFreeWhenAWindowIsClosedInMidExport) {
  load("large.jpg");
  watch = {};
  watch.run([this] { editor->view()->exports().exportMedia(); });
  ASSERT_TRUE(state().busy());
  watch.run([this] {
    delete editor;
    editor = nullptr;
  });
  EXPECT_LE(watch.longest().blocked, kStopLimit);
  expectShortTurns("closing a window in mid-export");
}

}  // namespace
}  // namespace vantrel
