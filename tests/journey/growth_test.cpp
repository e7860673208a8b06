#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <atomic>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>

#include "canvas/canvas_scroll_view.h"
#include "canvas/video_canvas_view.h"
#include "editor/application_windows.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "export/export_temporary_storage.h"
#include "review/image_review_view.h"
#include "review/review_window.h"
#include "support/film_folder.h"
#include "support/picture_files.h"

/// The toolkit's hooks for tools that look into programs.
extern quintptr Q_DECL_IMPORT qtHookData[];

namespace vantrel {
namespace {

/// Of empty windows; one with a file takes more time, and one that leaks shows in a few.
constexpr int kRounds = 100, kRoundsWithFile = 20;
/// In which caches fill.
constexpr int kFirstRounds = 5;
// Of qtHookData.
constexpr int kObjectAdded = 3, kObjectRemoved = 4;

std::atomic<int64_t> objects = 0;

int64_t entriesOf(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder),
                       std::filesystem::directory_iterator());
}

/// All that a window may leave behind.
struct Holdings {
  int64_t objects = 0, widgets = 0, windows = 0, threads = 0, files = 0, exports = 0;
  friend bool operator==(const Holdings&, const Holdings&) = default;

  static Holdings now() {
    return {vantrel::objects,
            QApplication::allWidgets().size(),
            QGuiApplication::allWindows().size(),
            entriesOf("/proc/self/task"),
            entriesOf("/proc/self/fd"),
            entriesOf(ExportTemporaryStorage::shared().directory().c_str())};
  }
};

std::ostream& operator<<(std::ostream& out, const Holdings& held) {
  return out << held.objects << " objects, " << held.widgets << " widgets, " << held.windows
             << " windows, " << held.threads << " threads, " << held.files << " files, "
             << held.exports << " exports";
}

/// Lets what is deleted later go.
void settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
}

class GrowthTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    qtHookData[kObjectAdded] = reinterpret_cast<quintptr>(+[](QObject*) { ++objects; });
    qtHookData[kObjectRemoved] = reinterpret_cast<quintptr>(+[](QObject*) { --objects; });
    s_films = std::make_unique<testing::FilmFolder>();
    s_films->make("film.mov");
    testing::savePng(*s_films / "photo.png", 200, 150);
  }
  static void TearDownTestSuite() {
    qtHookData[kObjectAdded] = qtHookData[kObjectRemoved] = 0;
    s_films.reset();
  }

  /// Many rounds leave no more than a few have. What comes late, but once, is no growth: after it
  /// as many rounds again leave nothing.
  static void expectNoGrowth(int rounds, const std::function<void()>& round) {
    run(kFirstRounds, round);
    Holdings before = Holdings::now();
    run(rounds, round);
    // Threads of others end in their own time.
    if (!QTest::qWaitFor([&] { return Holdings::now() == before; })) {
      before = Holdings::now();
      run(rounds, round);
      QTest::qWaitFor([&] { return Holdings::now() == before; });
    }
    EXPECT_EQ(Holdings::now(), before);
  }
  static void run(int rounds, const std::function<void()>& round) {
    for (int count = 0; count < rounds && !HasFatalFailure(); ++count)
      round();
    settle();
  }

  void openAndClose(const char* name) {
    EditorWindow* const window = name ? windows.openFile(*s_films / name) : windows.openEditor();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    if (name) {
      ASSERT_TRUE(
          QTest::qWaitFor([&] { return window->view()->canvas()->canvas()->isPictureShown(); }));
    }
    close(window);
  }
  static void close(QWidget* window) {
    const QPointer<QWidget> open = window;
    window->close();
    settle();
    ASSERT_TRUE(open.isNull());
  }
  /// A review of a copy of the file, closed when `isShown` of its window.
  void review(const char* name, const ContentType& type,
              const std::function<bool(ReviewWindow&)>& isShown) {
    TemporaryExport file(ExportTemporaryStorage::shared().newExportPath(QStringLiteral("tmp")));
    std::filesystem::copy_file(*s_films / name, file.path());
    ExportSummary summary;
    summary.resolution = {160, 120};
    ReviewWindow* const window =
        windows.openReview({std::move(file), summary, type, QStringLiteral("copy")});
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    ASSERT_TRUE(QTest::qWaitFor([&] { return isShown(*window); }));
    const QPointer<QWidget> open = window;
    // An unsaved one would ask.
    delete window;
    settle();
  }

  static inline std::unique_ptr<testing::FilmFolder> s_films;
  ApplicationWindows windows;
};

TEST_F(GrowthTest, IsNoneAfterAHundredEmptyWindows) {
  expectNoGrowth(kRounds, [this] { openAndClose(nullptr); });
}

TEST_F(GrowthTest, IsNoneAfterManyWindowsWithAnImage) {
  expectNoGrowth(kRoundsWithFile, [this] { openAndClose("photo.png"); });
}

TEST_F(GrowthTest, IsNoneAfterManyWindowsWithAVideo) {
  expectNoGrowth(kRoundsWithFile, [this] { openAndClose("film.mov"); });
}

TEST_F(GrowthTest, IsNoneAfterManyReviewsOfAnImage) {
  expectNoGrowth(kRoundsWithFile, [this] {
    review("photo.png", ContentType::png(), [](ReviewWindow& window) {
      return static_cast<ImageReviewView*>(window.centralWidget())->isImageShown();
    });
  });
}

TEST_F(GrowthTest, IsNoneAfterManyReviewsOfAVideo) {
  expectNoGrowth(kRoundsWithFile, [this] {
    review("film.mov", ContentType::quickTimeMovie(), [](ReviewWindow& window) {
      return window.document().reviewPlayer() && window.document().reviewPlayer()->picture();
    });
  });
}

}  // namespace
}  // namespace vantrel
