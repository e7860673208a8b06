#include <gtest/gtest.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>
#include <memory>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_appearance.h"
#include "canvas/crop_overlay_view.h"
#include "canvas/video_canvas_view.h"
#include "controls/crop_number_field.h"
#include "controls/crop_panel.h"
#include "editor/drop_highlight_view.h"
#include "editor/editor_view.h"
#include "editor/editor_workspace.h"
#include "editor/empty_canvas_view.h"
#include "inspector/crop_section.h"
#include "inspector/inspector_view.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

/// One editor in a window of its own, without menus and tool bar.
class EditorLayoutTest : public ::testing::Test {
 protected:
  void SetUp() override {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    testing::savePng(folder / "photo.png", 400, 300);
    view->resize(1000, 700);
    view->show();
    view->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
  }
  void load(const char* name) {
    view->loader().loadMedia(folder / name);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
    settle();
  }
  /// What has changed is shown at the next turn of the event loop.
  static void settle() { QCoreApplication::processEvents(); }
  void setBusy(bool busy) {
    state().setBusy(busy);
    settle();
  }
  void hover() {
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString((folder / "photo.png").string()))});
    QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.get(), &enter);
    settle();
  }
  void leave() {
    QDragLeaveEvent event;
    QApplication::sendEvent(view.get(), &event);
    settle();
  }
  /// The colour around the picture, as it is drawn.
  QColor drawnCanvasColor() { return canvas()->canvas()->grabFrame().pixelColor(2, 2); }
  static bool isAbove(const QWidget* upper, const QWidget* lower) {
    const QObjectList& siblings = upper->parent()->children();
    return upper->parent() == lower->parent() && siblings.indexOf(upper) > siblings.indexOf(lower);
  }

  EditorState& state() { return view->state(); }
  CanvasScrollView* canvas() { return view->canvas(); }
  EditorWorkspace* workspace() { return view->workspace(); }
  EmptyCanvasView* empty() { return view->emptyView(); }
  InspectorView* inspector() { return view->inspector(); }
  DropHighlightView* highlight() { return view->findChild<DropHighlightView*>(); }

  testing::TemporaryFolder folder;
  QMimeData data;
  std::unique_ptr<EditorView> view =
      std::make_unique<EditorView>(QUuid::createUuid(), [](const FinishedExport&) {});
};

TEST_F(EditorLayoutTest, IsEmptyWithoutAFile) {
  EXPECT_TRUE(state().showInspector());
  EXPECT_FALSE(inspector()->isVisible());
  EXPECT_FALSE(workspace()->playbackPanel()->isVisible());
  EXPECT_FALSE(highlight()->isVisible());
  EXPECT_TRUE(empty()->isVisible());
  EXPECT_TRUE(empty()->isEnabled());
  EXPECT_EQ(workspace()->geometry(), view->rect());
  EXPECT_EQ(canvas()->geometry(), workspace()->rect());
  EXPECT_EQ(empty()->geometry(), workspace()->rect());
  EXPECT_EQ(drawnCanvasColor(), view->palette().color(QPalette::Window));
}

TEST_F(EditorLayoutTest, LaysItsLayersOverEachOther) {
  EXPECT_TRUE(isAbove(empty(), canvas()));
  EXPECT_TRUE(isAbove(workspace()->playbackPanel(), empty()));
  load("photo.png");
  hover();
  EXPECT_TRUE(isAbove(highlight(), workspace()));
  EXPECT_TRUE(isAbove(highlight(), inspector()));
  EXPECT_EQ(highlight()->geometry(), view->rect());
}

TEST_F(EditorLayoutTest, ShowsAPictureWithTheInspectorBesideIt) {
  load("photo.png");
  EXPECT_FALSE(empty()->isVisible());
  EXPECT_TRUE(inspector()->isVisible());
  EXPECT_TRUE(canvas()->isEnabled());
  EXPECT_FALSE(workspace()->playbackPanel()->isVisible());
  EXPECT_EQ(inspector()->width(), 320);
  EXPECT_EQ(inspector()->geometry().right(), view->rect().right());
  EXPECT_EQ(workspace()->width(), view->width() - 320);
  EXPECT_EQ(canvas()->geometry(), workspace()->rect());
}

TEST_F(EditorLayoutTest, FramesAPictureTwentyPointsFromTheEdges) {
  load("photo.png");
  EXPECT_EQ(workspace()->framingInsets(), QMarginsF(20, 20, 20, 20));
  ASSERT_TRUE(QTest::qWaitFor([this] { return !canvas()->camera().isMoving(); }));
  // The framing of the canvas itself keeps 120 points at the sides for the fields.
  const QRectF shown = canvas()->camera().projection().imageFrame();
  EXPECT_NEAR(shown.left(), 140, 1);
  EXPECT_NEAR(shown.right(), workspace()->width() - 140, 1);
  EXPECT_NEAR(shown.center().y(), workspace()->height() / 2.0, 1);
}

TEST_F(EditorLayoutTest, PaintsTheColourOfTheCanvasOnlyBehindAFile) {
  state().setCanvasColor(QColor(30, 90, 150));
  settle();
  EXPECT_EQ(drawnCanvasColor(), view->palette().color(QPalette::Window));
  load("photo.png");
  EXPECT_EQ(drawnCanvasColor(), QColor(30, 90, 150));
  state().setCanvasColor({});
  settle();
  EXPECT_EQ(drawnCanvasColor().rgb(), CropAppearance::canvas(view->palette()).rgb());
  state().setCanvasColor(QColor(30, 90, 150));
  view->loader().closeMedia();
  settle();
  EXPECT_EQ(drawnCanvasColor(), view->palette().color(QPalette::Window));
}

TEST_F(EditorLayoutTest, PresentsTheInspectorOfAFileThatIsWished) {
  state().toggleInspector();
  settle();
  EXPECT_FALSE(inspector()->isVisible());
  load("photo.png");
  EXPECT_TRUE(inspector()->isVisible());
  state().toggleInspector();
  settle();
  EXPECT_FALSE(inspector()->isVisible());
  EXPECT_TRUE(QTest::qWaitFor([this] { return canvas()->geometry() == view->rect(); }));
  view->loader().closeMedia();
  settle();
  EXPECT_FALSE(state().showInspector());
  load("photo.png");
  EXPECT_TRUE(inspector()->isVisible());
}

TEST_F(EditorLayoutTest, LetsNothingBeTouchedWhileItIsBusy) {
  setBusy(true);
  EXPECT_FALSE(empty()->isEnabled());
  EXPECT_TRUE(empty()->isVisible());
  setBusy(false);
  EXPECT_TRUE(empty()->isEnabled());
  load("photo.png");
  setBusy(true);
  EXPECT_FALSE(canvas()->isEnabled());
  EXPECT_TRUE(inspector()->isVisible());
  hover();
  EXPECT_FALSE(highlight()->isVisible());
  setBusy(false);
  EXPECT_TRUE(canvas()->isEnabled());
}

TEST_F(EditorLayoutTest, HighlightsWhileAFileHovers) {
  hover();
  EXPECT_TRUE(highlight()->isVisible());
  leave();
  EXPECT_FALSE(highlight()->isVisible());
}

TEST_F(EditorLayoutTest, LeavesEveryDropToTheWholeWindow) {
  load("photo.png");
  for (const auto* field : view->findChildren<QLineEdit*>())
    EXPECT_FALSE(field->acceptDrops()) << field->accessibleName().toStdString();
}

TEST_F(EditorLayoutTest, EndsThePreviewAtEscape) {
  load("photo.png");
  QWidget* const places[] = {canvas()->overlay(), canvas(), view.get(),
                             inspector()->cropSection()->marginField(CropMargins::Edge::left)};
  for (QWidget* place : places) {
    state().setPreviewOnly(true);
    settle();
    place->setFocus();
    QTest::keyClick(view->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(state().previewOnly());
  }
}

TEST_F(EditorLayoutTest, EndsThePreviewAtEscapeAlsoWhileItIsBusy) {
  load("photo.png");
  state().setPreviewOnly(true);
  setBusy(true);
  QTest::keyClick(view->windowHandle(), Qt::Key_Escape);
  EXPECT_FALSE(state().previewOnly());
}

TEST_F(EditorLayoutTest, AsksForOneFileOfAnyKind) {
  view->openMedia();
  auto* const panel = view->findChild<QFileDialog*>();
  ASSERT_NE(panel, nullptr);
  EXPECT_TRUE(panel->isModal());
  EXPECT_EQ(panel->acceptMode(), QFileDialog::AcceptOpen);
  EXPECT_EQ(panel->fileMode(), QFileDialog::ExistingFile);
  EXPECT_EQ(panel->nameFilters(), QStringList{MediaLoader::openFilter()});
  QTest::keyClick(panel, Qt::Key_Escape);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !view->findChild<QFileDialog*>(); }));
  EXPECT_FALSE(state().busy());
  EXPECT_FALSE(state().openError());
}

TEST_F(EditorLayoutTest, LoadsWhatIsChosenAlsoWhereAFileHasComeMeanwhile) {
  testing::savePng(folder / "chosen.png", 20, 10);
  view->openMedia();
  auto* const panel = view->findChild<QFileDialog*>();
  ASSERT_NE(panel, nullptr);
  load("photo.png");
  Q_EMIT panel->fileSelected(QString::fromStdString((folder / "chosen.png").string()));
  panel->close();
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().sourceSize() == QSizeF(20, 10); }));
}

TEST_F(EditorLayoutTest, AlertsToWhatFailedUntilThatIsRead) {
  const struct {
    void (EditorState::*set)(const std::optional<QString>&);
    const std::optional<QString>& (EditorState::*get)() const;
    QString title;
  } alerts[] = {
      {&EditorState::setOpenError, &EditorState::openError, QStringLiteral("Could Not Open File")},
      {&EditorState::setExportError, &EditorState::exportError,
       QStringLiteral("Could Not Export File")}};
  for (const auto& alert : alerts) {
    (state().*alert.set)(QStringLiteral("It is <b>gone</b>."));
    auto* const box = view->findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), alert.title);
    EXPECT_EQ(box->informativeText(), QStringLiteral("It is <b>gone</b>."));
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_FALSE((state().*alert.get)());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !view->findChild<QMessageBox*>(); }));
  }
}

TEST_F(EditorLayoutTest, TakesAnAlertAwayWithItsMessage) {
  state().setOpenError(QStringLiteral("It is gone."));
  const auto* const box = view->findChild<QMessageBox*>();
  ASSERT_NE(box, nullptr);
  state().setOpenError({});
  EXPECT_TRUE(QTest::qWaitFor([this] { return !view->findChild<QMessageBox*>(); }));
}

TEST_F(EditorLayoutTest, GoesWithItsAlert) {
  state().setOpenError(QStringLiteral("It is gone."));
  view.reset();
}

}  // namespace
}  // namespace vantrel
