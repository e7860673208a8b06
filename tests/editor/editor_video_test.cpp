#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QToolButton>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_workspace_layout.h"
#include "canvas/video_canvas_view.h"
#include "controls/crop_number_field.h"
#include "controls/crop_panel.h"
#include "editor/editor_tool_bar.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "editor/editor_workspace.h"
#include "editor/empty_canvas_view.h"
#include "editor/waiting_exports.h"
#include "export/video_exporter.h"
#include "inspector/crop_export_footer.h"
#include "inspector/crop_section.h"
#include "inspector/inspector_view.h"
#include "platform/desktop/formatting.h"
#include "playback/playback_controls.h"
#include "playback/playback_state.h"
#include "playback/zoom_controls.h"
#include "support/film_folder.h"
#include "support/picture_files.h"

namespace vantrel {
namespace {

/// A window with real films in a real player.
class EditorVideoTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_films = std::make_unique<testing::FilmFolder>();
    s_films->make("film.mp4");
    s_films->makeRepeated("film.mp4", "long.mp4", 30);
    testing::writeFile(*s_films / "broken.mov", "no movie at all");
    testing::savePng(*s_films / "photo.png", 40, 30);
  }
  static void TearDownTestSuite() { s_films.reset(); }

  void SetUp() override {
    window = new EditorWindow([this](FinishedExport done) { finished.emplace(std::move(done)); });
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  }
  void TearDown() override { delete window; }

  void load(const char* name) {
    view()->loader().loadMedia(*s_films / name);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
    QCoreApplication::processEvents();
  }
  /// Opens a video and waits for its first picture to be on the screen.
  void open(const char* name) {
    load(name);
    ASSERT_NE(state().player(), nullptr);
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return state().player()->picture() && surface()->isPictureShown(); }));
  }
  QImage picture() { return surface()->grabFrame(); }
  void click(QAbstractButton* button) {
    QTest::mouseClick(button, Qt::LeftButton);
    QCoreApplication::processEvents();
  }
  /// The button of the tool bar with this label.
  QAbstractButton* tool(const QString& label) {
    for (auto* button : window->toolBar()->findChildren<QToolButton*>()) {
      if (button->text() == label) return button;
    }
    return nullptr;
  }

  EditorView* view() { return window->view(); }
  EditorState& state() { return view()->state(); }
  EditorWorkspace* workspace() { return view()->workspace(); }
  PlaybackControls* bar() { return workspace()->playback(); }
  VideoCanvasView* surface() { return view()->canvas()->canvas(); }
  CropExportFooter* footer() { return view()->inspector()->footer(); }

  static inline std::unique_ptr<testing::FilmFolder> s_films;
  EditorWindow* window = nullptr;
  std::optional<FinishedExport> finished;
};

TEST_F(EditorVideoTest, ShowsAVideoWithItsBar) {
  EXPECT_FALSE(bar()->isVisible());
  open("film.mp4");
  EXPECT_EQ(window->windowTitle(), QStringLiteral("film.mp4"));
  EXPECT_FALSE(view()->emptyView()->isVisible());
  EXPECT_TRUE(view()->inspector()->isVisible());
  EXPECT_EQ(view()->canvas()->geometry(), workspace()->rect());

  const QWidget* panel = workspace()->playbackPanel();
  ASSERT_TRUE(panel->isVisible());
  EXPECT_TRUE(bar()->isEnabled());
  const CropWorkspaceLayout layout{workspace()->size(), static_cast<double>(panel->height())};
  EXPECT_EQ(panel->width(), layout.playbackWidth());
  EXPECT_NEAR(panel->x() + panel->width() / 2.0, layout.playbackCenter().x(), 1);
  EXPECT_EQ(panel->y() + panel->height(), workspace()->height() - 20);
  EXPECT_EQ(workspace()->framingInsets(), layout.framingInsets());

  // The middle of the film is no part of the canvas.
  const QImage shown = picture();
  const QColor corner = shown.pixelColor(2, 2);
  const QPointF middle =
      surface()->projection().imageFrame().center() * surface()->devicePixelRatioF();
  EXPECT_NE(shown.pixelColor(middle.toPoint()), corner);
}

TEST_F(EditorVideoTest, ShowsTheFactsOfAVideo) {
  open("film.mp4");
  const SourceFile& file = *view()->state().file();
  QStringList texts;
  for (const QLabel* const label : view()->inspector()->findChildren<QLabel*>())
    texts << label->text();
  for (const QString& fact :
       {QStringLiteral("SDR"), CropFormatting::fixed(file.sourceMbps, 2) + QStringLiteral(" Mbps"),
        CropFormatting::fixed(file.sourceFPS, 0) + QStringLiteral(" fps"),
        CropFormatting::fixed(file.duration, 2) + QStringLiteral(" s"),
        CropFormatting::byteCount(file.sourceBytes)}) {
    EXPECT_TRUE(texts.contains(fact)) << fact.toStdString();
  }
  EXPECT_GT(file.sourceMbps, 0);
  EXPECT_GT(file.duration, 0);
}

TEST_F(EditorVideoTest, KeepsTheBarInItsPlaceWhenTheWindowGrows) {
  open("film.mp4");
  window->resize(window->size() + QSize(100, 60));
  QWidget* const panel = workspace()->playbackPanel();
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return panel->y() + panel->height() == workspace()->height() - 20; }));
  EXPECT_EQ(view()->canvas()->size(), workspace()->size());
}

TEST_F(EditorVideoTest, PlaysAndPauses) {
  open("long.mp4");
  const QImage first = picture();
  click(bar()->playButton());
  EXPECT_EQ(state().player()->rate(), 1);
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().player()->currentTime() > 0.3; }));
  click(bar()->playButton());
  EXPECT_EQ(state().player()->rate(), 0);
  ASSERT_TRUE(QTest::qWaitFor([this] { return surface()->isPictureShown(); }));
  EXPECT_NE(picture(), first);
  EXPECT_NEAR(bar()->playback()->position(), state().player()->currentTime(), 0.1);
}

TEST_F(EditorVideoTest, ScrubsToWhereTheSliderIsDragged) {
  open("long.mp4");
  const auto first = state().player()->picture();
  QSlider* const slider = bar()->slider();
  const int y = slider->height() / 2;
  QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(6, y));
  for (int x = 20; x <= slider->width() / 2; x += 20)
    QTest::mouseMove(slider, QPoint(x, y));
  QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(slider->width() / 2, y));
  EXPECT_NEAR(bar()->playback()->seekPosition(), 15, 3);
  EXPECT_NEAR(state().player()->currentTime(), bar()->playback()->seekPosition(), 0.1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return state().player()->picture() != first; }));
  EXPECT_EQ(state().player()->rate(), 0);
}

TEST_F(EditorVideoTest, CropsByTypedNumbersAndExportsAsHevc) {
  open("film.mp4");
  CropNumberField* const left =
      view()->inspector()->cropSection()->marginField(CropMargins::Edge::left);
  QTest::mouseClick(left, Qt::LeftButton);
  QTest::keyClicks(left, QStringLiteral("21"));
  click(bar()->playButton());
  click(footer()->exportButton());
  EXPECT_EQ(state().player()->rate(), 0);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }, 30'000));

  ASSERT_TRUE(finished) << state().exportError().value_or(QString()).toStdString();
  const CropMargins crop = state().history().crop();
  // Rounded up, for the width stays even.
  EXPECT_EQ(crop.left, 22);
  const QSizeF size(state().outputWidth(), state().outputHeight());
  EXPECT_EQ(VideoExporter::geometry(Movie::open(finished->file.path())).bounds.size(), size);
  EXPECT_EQ(finished->summary.codec, QStringLiteral("HEVC"));
  EXPECT_TRUE(bar()->isVisible());
}

TEST_F(EditorVideoTest, CancelsAnExportHalfWay) {
  open("long.mp4");
  const size_t before = testing::waitingExports();
  click(footer()->exportButton());
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().exportState().progress() > 0.02; }, 30'000));
  click(footer()->cancelButton());
  ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
  EXPECT_EQ(footer()->statusLabel()->text(), QStringLiteral("Export cancelled"));
  EXPECT_EQ(window->findChild<QMessageBox*>(), nullptr);
  EXPECT_FALSE(finished);
  EXPECT_EQ(testing::waitingExports(), before);
}

TEST_F(EditorVideoTest, GoesOnPlayingWhenAnotherFileCannotBeOpened) {
  open("long.mp4");
  Player* const before = state().player();
  click(bar()->playButton());
  load("broken.mov");
  auto* alert = window->findChild<QMessageBox*>();
  ASSERT_NE(alert, nullptr);
  EXPECT_EQ(alert->text(), QStringLiteral("Could Not Open File"));
  EXPECT_EQ(state().player(), before);
  EXPECT_EQ(before->rate(), 1);
  EXPECT_TRUE(bar()->isVisible());
  EXPECT_EQ(window->windowTitle(), QStringLiteral("long.mp4"));
  alert->button(QMessageBox::Ok)->click();
}

TEST_F(EditorVideoTest, OutlivesTheFileOfAnOpenVideo) {
  const std::filesystem::path path = *s_films / "changing.mp4";
  const struct {
    const char* what;
    std::function<void()> change;
    QString line;
  } cases[] = {
      {"gone", [&] { std::filesystem::remove(path); },
       QStringLiteral("“changing.mp4” could not be")},
      {"a folder",
       [&] {
         std::filesystem::remove(path);
         std::filesystem::create_directory(path);
       },
       QStringLiteral("“changing.mp4” could not be opened: ")},
      {"empty", [&] { std::filesystem::resize_file(path, 0); }, QStringLiteral("“changing.mp4” ")},
      {"cut off", [&] { std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2); },
       QStringLiteral("“changing.mp4” ")},
      {"words", [&] { testing::writeFile(path, std::string(500'000, 'z')); },
       QStringLiteral("“changing.mp4” ")},
      {"smaller",
       [&] {
         std::filesystem::copy_file(*s_films / "small.mp4", path,
                                    std::filesystem::copy_options::overwrite_existing);
       },
       QStringLiteral("The crop must fit inside the video")},
  };
  s_films->make("small.mp4", {"-vf", "scale=64:48"});
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    std::filesystem::remove(path);
    std::filesystem::copy_file(*s_films / "long.mp4", path);
    open("changing.mp4");
    click(bar()->playButton());
    ASSERT_TRUE(QTest::qWaitFor([this] { return state().player()->currentTime() > 0.1; }));
    one.change();
    bool isAnswered = false;
    state().player()->seek({29, 1}, [&](bool) { isAnswered = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isAnswered; }));
    if (state().player()->rate() == 0) click(bar()->playButton());

    const size_t before = testing::waitingExports();
    click(footer()->exportButton());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }, 30'000));
    ASSERT_TRUE(state().exportError());
    EXPECT_TRUE(state().exportError()->startsWith(one.line))
        << state().exportError()->toStdString();
    EXPECT_FALSE(state().exportError()->contains(u'\n'));
    state().setExportError({});
    EXPECT_FALSE(finished);
    EXPECT_EQ(testing::waitingExports(), before);
    EXPECT_TRUE(state().loaded());
    EXPECT_TRUE(bar()->isVisible());
    view()->loader().closeMedia();
  }
}

TEST_F(EditorVideoTest, FramesAVideoClearOfTheBarHoweverHighThatIs) {
  open("film.mp4");
  const QWidget* const panel = workspace()->playbackPanel();
  const auto isClear = [&] {
    return workspace()->framingInsets() == QMarginsF(0, 0, 0, panel->height() + 40) &&
           view()->canvas()->camera().wish().insets == workspace()->framingInsets() &&
           panel->y() + panel->height() == workspace()->height() - 20;
  };
  EXPECT_TRUE(isClear());
  const int before = panel->height();
  bar()->setMinimumHeight(bar()->height() + 60);
  ASSERT_TRUE(QTest::qWaitFor([&] { return panel->height() == before + 60; }));
  EXPECT_TRUE(QTest::qWaitFor(isClear));
}

TEST_F(EditorVideoTest, TheBarGoesWithTheVideo) {
  open("film.mp4");
  load("photo.png");
  EXPECT_FALSE(bar()->isVisible());
  EXPECT_EQ(workspace()->framingInsets(), QMarginsF(20, 20, 20, 20));
  EXPECT_TRUE(surface()->isVisible());
  open("film.mp4");
  EXPECT_TRUE(bar()->isVisible());
  view()->loader().closeMedia();
  QCoreApplication::processEvents();
  EXPECT_FALSE(bar()->isVisible());
  EXPECT_TRUE(view()->emptyView()->isVisible());
}

TEST_F(EditorVideoTest, ClosesWhileItPlays) {
  open("long.mp4");
  click(bar()->playButton());
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().player()->currentTime() > 0.1; }));
  window->setAttribute(Qt::WA_DeleteOnClose, false);
  window->close();
}

TEST_F(EditorVideoTest, ClosesWhileItExports) {
  open("long.mp4");
  const size_t before = testing::waitingExports();
  click(footer()->exportButton());
  delete std::exchange(window, nullptr);
  EXPECT_EQ(testing::waitingExports(), before);
  EXPECT_FALSE(finished);
}

TEST_F(EditorVideoTest, OpensTheSampleFromTheEmptyCanvas) {
  click(view()->emptyView()->sampleButton());
  EXPECT_TRUE(state().busy());
  ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
  EXPECT_EQ(state().file()->path.filename(), "Vantrel Sample.mov");
  ASSERT_TRUE(QTest::qWaitFor([this] { return bar()->isVisible(); }));
}

TEST_F(EditorVideoTest, OffersPreviewZoomAndInspectorInTheToolBar) {
  EXPECT_FALSE(tool(QStringLiteral("Preview Crop"))->isEnabled());
  EXPECT_FALSE(tool(QStringLiteral("Inspector"))->isEnabled());
  EXPECT_FALSE(window->toolBar()->zoom()->isEnabled());
  open("film.mp4");
  QAbstractButton* const preview = tool(QStringLiteral("Preview Crop"));
  QAbstractButton* const inspector = tool(QStringLiteral("Inspector"));
  EXPECT_EQ(preview->toolTip(), QStringLiteral("Preview the crop (Ctrl+P)"));
  EXPECT_EQ(inspector->toolTip(), QStringLiteral("Show or hide the inspector (Ctrl+Alt+I)"));
  click(preview);
  EXPECT_TRUE(state().previewOnly());
  EXPECT_EQ(preview->text(), QStringLiteral("Exit Preview"));
  click(preview);
  EXPECT_FALSE(state().previewOnly());
  click(inspector);
  EXPECT_FALSE(view()->inspector()->isVisible());
  click(inspector);
  EXPECT_TRUE(view()->inspector()->isVisible());

  ZoomControls* const zoom = window->toolBar()->zoom();
  EXPECT_TRUE(zoom->isEnabled());
  const double fitted = state().camera().zoom;
  EXPECT_NE(fitted, 1);
  click(zoom->percentageButton());
  EXPECT_DOUBLE_EQ(state().camera().zoom, 1);
  EXPECT_FALSE(state().camera().fit);
  click(zoom->zoomInButton());
  EXPECT_NEAR(state().camera().zoom, 1.18921, 1e-5);
  zoom->slider()->setValue(2000);
  QCoreApplication::processEvents();
  EXPECT_NEAR(state().camera().zoom, 2, 0.01);
  click(zoom->fitButton());
  EXPECT_TRUE(state().camera().fit);
  ASSERT_TRUE(QTest::qWaitFor([&] { return state().camera().zoom == fitted; }));
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return zoom->percentageButton()->text() == ZoomControls::percentage(fitted); }));
}

}  // namespace
}  // namespace vantrel
