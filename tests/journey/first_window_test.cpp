#include <gtest/gtest.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_overlay_view.h"
#include "canvas/video_canvas_view.h"
#include "controls/crop_number_field.h"
#include "editor/application_windows.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "export/export_temporary_storage.h"
#include "inspector/crop_export_footer.h"
#include "inspector/crop_section.h"
#include "inspector/inspector_view.h"
#include "platform/image/image_reader.h"
#include "review/review_window.h"
#include "review/save_dialog.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using Edge = CropMargins::Edge;

template <class Widget>
QList<Widget*> visible() {
  QList<Widget*> found;
  for (QWidget* widget : QApplication::allWidgets()) {
    auto* match = qobject_cast<Widget*>(widget);
    if (match && match->isVisible()) found << match;
  }
  return found;
}

/// The one visible widget of this kind, as soon as there is one.
template <class Widget>
Widget* waitFor() {
  if (!QTest::qWaitFor([] { return visible<Widget>().size() == 1; })) return nullptr;
  return visible<Widget>().first();
}

template <class Widget>
bool waitUntilGone() {
  return QTest::qWaitFor([] { return visible<Widget>().isEmpty(); });
}

/// Gives the window the keyboard, also where no window manager does.
bool activate(QWidget* window) {
  window->activateWindow();
  // A window system counts a dialog as active together with what it stands over.
  return QTest::qWaitForWindowActive(window) &&
         QTest::qWaitFor([window] { return window->isActiveWindow(); });
}

class FirstWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    testing::savePng(folder / "photo.png", 120, 90);
  }
  void TearDown() override {
    qDeleteAll(visible<EditorWindow>());
    qDeleteAll(visible<ReviewWindow>());
  }

  void open(const std::filesystem::path& path) {
    editor = windows.openFile(path);
    ASSERT_TRUE(activate(editor));
    ASSERT_TRUE(QTest::qWaitFor([this] { return state().loaded() && !state().busy(); }));
    ASSERT_TRUE(QTest::qWaitFor([this] { return editor->view()->inspector()->isVisible(); }));
  }
  EditorState& state() { return editor->view()->state(); }
  CropMargins crop() { return state().history().crop(); }
  CropNumberField* field(Edge edge) {
    return editor->view()->inspector()->cropSection()->marginField(edge);
  }
  CropExportFooter* footer() { return editor->view()->inspector()->footer(); }

  void type(Edge edge, const QString& text) {
    QTest::mouseClick(field(edge), Qt::LeftButton);
    QTest::keyClicks(field(edge), text);
  }
  ReviewWindow* exportCrop() {
    QTest::mouseClick(footer()->exportButton(), Qt::LeftButton);
    ReviewWindow* review = waitFor<ReviewWindow>();
    if (review && !activate(review)) return nullptr;
    return review;
  }
  /// Answers the file dialog that is open, as by pasting a path.
  void answerFileDialog(const std::filesystem::path& path) {
    auto* dialog = waitFor<QFileDialog>();
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(activate(dialog));
    auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(name, nullptr);
    // Without the focus the dialog would write into it whatever it finds selected.
    name->setFocus();
    name->setText(QString::fromStdString(path.string()));
    auto* buttons = dialog->findChild<QDialogButtonBox*>();
    const bool saves = dialog->acceptMode() == QFileDialog::AcceptSave;
    QTest::mouseClick(buttons->button(saves ? QDialogButtonBox::Save : QDialogButtonBox::Open),
                      Qt::LeftButton);
    ASSERT_TRUE(waitUntilGone<QFileDialog>());
  }
  void answer(QMessageBox::StandardButton button) {
    auto* box = waitFor<QMessageBox>();
    ASSERT_NE(box, nullptr);
    ASSERT_TRUE(activate(box));
    QTest::mouseClick(box->button(button), Qt::LeftButton);
    ASSERT_TRUE(waitUntilGone<QMessageBox>());
  }
  void drop(const QUrl& url) {
    QMimeData data;
    data.setUrls({url});
    QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(editor->view(), &enter);
    dropAccepted = enter.isAccepted();
    highlighted = state().dropTargeted();
    QDropEvent event(QPointF(100, 100), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                     Qt::ShiftModifier);
    if (!dropAccepted) return;
    event.setDropAction(Qt::MoveAction);
    QApplication::sendEvent(editor->view(), &event);
    EXPECT_EQ(event.dropAction(), Qt::CopyAction);
  }
  QUrl photo() const {
    return QUrl::fromLocalFile(QString::fromStdString((folder / "photo.png").string()));
  }

  /// The saved file holds the pattern from (left, top) on.
  static void expectPattern(const std::filesystem::path& path, int64_t width, int64_t height,
                            int64_t left, int64_t top) {
    const auto reader = ImageReader::open(path);
    ASSERT_NE(reader, nullptr);
    const Bitmap bitmap = reader->decode({});
    ASSERT_EQ(bitmap.width(), width);
    ASSERT_EQ(bitmap.height(), height);
    for (int64_t y = 0; y < height; ++y) {
      for (int64_t x = 0; x < width; ++x) {
        for (int channel = 0; channel < 3; ++channel) {
          ASSERT_EQ(std::to_integer<int>(bitmap.pixel(x, y)[channel]),
                    testing::patternSample(x + left, y + top, channel))
              << x << ' ' << y << ' ' << channel;
        }
      }
    }
  }

  testing::TemporaryFolder folder;
  ApplicationWindows windows;
  EditorWindow* editor = nullptr;
  bool dropAccepted = false;
  bool highlighted = false;
};

TEST_F(FirstWindowTest, CropsAPictureFromFileToSavedFile) {
  open(folder / "photo.png");
  EXPECT_EQ(editor->windowTitle(), QStringLiteral("photo.png"));
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return editor->view()->canvas()->canvas()->isPictureShown(); }));
  type(Edge::left, QStringLiteral("11"));
  type(Edge::top, QStringLiteral("7"));
  type(Edge::right, QStringLiteral("20"));
  type(Edge::bottom, QStringLiteral("30"));
  EXPECT_EQ(crop(), (CropMargins{11, 7, 20, 30}));

  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  const std::filesystem::path temporary = review->document().temporaryExportPath();
  EXPECT_EQ(review->document().displayName(), QStringLiteral("photo-framed"));
  EXPECT_TRUE(
      review->document().summary().description().startsWith(QStringLiteral("PNG · 89 × 53 px · ")));

  QTest::keyClick(review, Qt::Key_S, Qt::ControlModifier);
  answerFileDialog(folder / "saved.png");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !review->document().isUnsaved(); }));
  expectPattern(folder / "saved.png", 89, 53, 11, 7);
  EXPECT_TRUE(std::filesystem::exists(temporary));

  review->close();
  ASSERT_TRUE(waitUntilGone<ReviewWindow>());
  EXPECT_TRUE(visible<QMessageBox>().isEmpty());
  EXPECT_FALSE(std::filesystem::exists(temporary));
  EXPECT_TRUE(std::filesystem::exists(folder / "saved.png"));
}

TEST_F(FirstWindowTest, SavesFilesOfAllNamesUnderWhatItProposes) {
  for (const std::string& stem :
       {std::string("two  words"), std::string("He said \"hi\""), std::string("🦊"),
        std::string("שלום עולם"), std::string(".hidden"), std::string("caf\xe9"),
        std::string(251, 'n')}) {
    std::filesystem::copy_file(folder / "photo.png", folder / (stem + ".png"));
    open(folder / (stem + ".png"));
    ReviewWindow* review = exportCrop();
    ASSERT_NE(review, nullptr) << stem;
    EXPECT_EQ(review->document().displayName(), exportTitle(stem + ".png"));
    review->save();
    auto* dialog = waitFor<SaveDialog>();
    ASSERT_NE(dialog, nullptr);
    dialog->setDirectory(QString::fromStdString(folder.path().string()));
    QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save),
                      Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !review->document().isUnsaved(); })) << stem;
    expectPattern(folder / review->document().suggestedFileName().toStdString(), 120, 90, 0, 0);
    review->close();
    ASSERT_TRUE(waitUntilGone<ReviewWindow>());
    editor->close();
    ASSERT_TRUE(waitUntilGone<EditorWindow>());
  }
}

TEST_F(FirstWindowTest, SavesOntoTheSource) {
  open(folder / "photo.png");
  type(Edge::top, QStringLiteral("80"));
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  review->save();
  auto* dialog = waitFor<SaveDialog>();
  ASSERT_NE(dialog, nullptr);
  ASSERT_TRUE(activate(dialog));
  auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  name->setFocus();
  name->setText(QString::fromStdString((folder / "photo.png").string()));
  QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save),
                    Qt::LeftButton);
  auto* question = waitFor<QMessageBox>();
  ASSERT_NE(question, nullptr);
  for (QAbstractButton* button : question->buttons())
    if (button->text() == u"Replace") QTest::mouseClick(button, Qt::LeftButton);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !review->document().isUnsaved(); }));
  expectPattern(folder / "photo.png", 120, 10, 0, 80);
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>{"photo.png"});
}

TEST_F(FirstWindowTest, ReportsAnExportThatWasDeletedAndClosesItsReview) {
  open(folder / "photo.png");
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  std::filesystem::remove_all(ExportTemporaryStorage::shared().directory());
  review->document().save(folder / "saved.png");
  auto* alert = waitFor<QMessageBox>();
  ASSERT_NE(alert, nullptr);
  EXPECT_EQ(alert->informativeText(),
            QStringLiteral("“saved.png” could not be saved: The finished export was deleted from "
                           "the temporary folder"));
  answer(QMessageBox::Ok);
  review->close();
  answer(QMessageBox::Discard);
  ASSERT_TRUE(waitUntilGone<ReviewWindow>());
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>{"photo.png"});
}

TEST_F(FirstWindowTest, ProposesANameAndAddsTheExtension) {
  open(folder / "photo.png");
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  review->save();
  auto* dialog = waitFor<QFileDialog>();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->selectedFiles().first().endsWith(QStringLiteral("/photo-framed.png")));
  answerFileDialog(folder / "named");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !review->document().isUnsaved(); }));
  expectPattern(folder / "named.png", 120, 90, 0, 0);
}

TEST_F(FirstWindowTest, ExportsWhatIsBeingTyped) {
  open(folder / "photo.png");
  type(Edge::left, QStringLiteral("500"));
  EXPECT_TRUE(field(Edge::left)->hasFocus());
  QTest::keyClick(field(Edge::left), Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
  ReviewWindow* review = waitFor<ReviewWindow>();
  ASSERT_NE(review, nullptr);
  EXPECT_EQ(review->document().summary().resolution, QSizeF(1, 90));
  EXPECT_FALSE(field(Edge::left)->isEditing());
  EXPECT_EQ(field(Edge::left)->text(), QStringLiteral("119"));
}

TEST_F(FirstWindowTest, CancelsAnExport) {
  testing::savePng(folder / "large.png", 4000, 3000);
  open(folder / "large.png");
  QTest::mouseClick(footer()->exportButton(), Qt::LeftButton);
  ASSERT_TRUE(footer()->cancelButton()->isVisible());
  QTest::mouseClick(footer()->cancelButton(), Qt::LeftButton);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
  EXPECT_EQ(footer()->statusLabel()->text(), QStringLiteral("Export cancelled"));
  EXPECT_TRUE(visible<ReviewWindow>().isEmpty());
  EXPECT_TRUE(visible<QMessageBox>().isEmpty());
  EXPECT_EQ(testing::namesIn(ExportTemporaryStorage::shared().directory()),
            std::vector<std::string>{"session.lock"});
}

TEST_F(FirstWindowTest, KeepsAReviewWhoseClosingIsCancelled) {
  open(folder / "photo.png");
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  review->close();
  answer(QMessageBox::Cancel);
  EXPECT_TRUE(review->isVisible());
  EXPECT_TRUE(std::filesystem::exists(review->document().temporaryExportPath()));
}

TEST_F(FirstWindowTest, DeletesAReviewThatIsNotSaved) {
  open(folder / "photo.png");
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  const std::filesystem::path temporary = review->document().temporaryExportPath();
  review->close();
  answer(QMessageBox::Discard);
  ASSERT_TRUE(waitUntilGone<ReviewWindow>());
  EXPECT_FALSE(std::filesystem::exists(temporary));
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>{"photo.png"});
}

TEST_F(FirstWindowTest, SavesAReviewBeforeItCloses) {
  open(folder / "photo.png");
  type(Edge::top, QStringLiteral("80"));
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  review->close();
  answer(QMessageBox::Save);
  answerFileDialog(folder / "closed.png");
  ASSERT_TRUE(waitUntilGone<ReviewWindow>());
  expectPattern(folder / "closed.png", 120, 10, 0, 80);
}

TEST_F(FirstWindowTest, KeepsAReviewWhenSavingBeforeClosingIsGivenUp) {
  open(folder / "photo.png");
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  review->close();
  answer(QMessageBox::Save);
  auto* dialog = waitFor<QFileDialog>();
  ASSERT_NE(dialog, nullptr);
  QTest::keyClick(dialog, Qt::Key_Escape);
  ASSERT_TRUE(waitUntilGone<QFileDialog>());
  EXPECT_TRUE(review->isVisible());
  EXPECT_TRUE(review->document().isUnsaved());
}

TEST_F(FirstWindowTest, ReportsASaveThatFailsAndKeepsTheReview) {
  open(folder / "photo.png");
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  review->document().save(folder / "missing" / "a.png");
  auto* alert = waitFor<QMessageBox>();
  ASSERT_NE(alert, nullptr);
  EXPECT_EQ(alert->text(), QStringLiteral("Could Not Save File"));
  EXPECT_FALSE(alert->informativeText().isEmpty());
  answer(QMessageBox::Ok);
  EXPECT_TRUE(review->document().isUnsaved());
  EXPECT_TRUE(std::filesystem::exists(review->document().temporaryExportPath()));
}

TEST_F(FirstWindowTest, LeavesEverythingWhenAFileCannotBeOpened) {
  open(folder / "photo.png");
  type(Edge::left, QStringLiteral("5"));
  testing::writeFile(folder / "bad.png", "\x89PNG\r\n\x1a\nnothing");
  QTest::keyClick(editor, Qt::Key_O, Qt::ControlModifier);
  answerFileDialog(folder / "bad.png");
  auto* alert = waitFor<QMessageBox>();
  ASSERT_NE(alert, nullptr);
  EXPECT_EQ(alert->text(), QStringLiteral("Could Not Open File"));
  EXPECT_EQ(alert->informativeText(), ImageError(ImageError::unreadable).errorDescription());
  answer(QMessageBox::Ok);
  EXPECT_FALSE(state().openError());
  EXPECT_EQ(editor->windowTitle(), QStringLiteral("photo.png"));
  EXPECT_EQ(crop().left, 5);
  EXPECT_FALSE(state().busy());
}

TEST_F(FirstWindowTest, OpensAFileByItsDialogInAnEmptyWindow) {
  editor = windows.openEditor();
  ASSERT_TRUE(activate(editor));
  EXPECT_EQ(editor->windowTitle(), QCoreApplication::applicationName());
  EXPECT_FALSE(editor->view()->inspector()->isVisible());
  QTest::keyClick(editor, Qt::Key_O, Qt::ControlModifier);
  answerFileDialog(folder / "photo.png");
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().loaded(); }));
  ASSERT_TRUE(QTest::qWaitFor([this] { return editor->view()->inspector()->isVisible(); }));
  QTest::keyClick(editor, Qt::Key_W, Qt::ControlModifier | Qt::AltModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !editor->view()->inspector()->isVisible(); }));
  EXPECT_EQ(editor->windowTitle(), QCoreApplication::applicationName());
}

TEST_F(FirstWindowTest, TakesADrop) {
  editor = windows.openEditor();
  ASSERT_TRUE(activate(editor));
  drop(photo());
  EXPECT_TRUE(dropAccepted);
  EXPECT_TRUE(highlighted);
  EXPECT_FALSE(state().dropTargeted());
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().loaded() && !state().busy(); }));
  EXPECT_EQ(state().sourceSize(), QSizeF(120, 90));
}

TEST_F(FirstWindowTest, RefusesADropWhileBusy) {
  editor = windows.openEditor();
  ASSERT_TRUE(activate(editor));
  state().setBusy(true);
  drop(photo());
  EXPECT_FALSE(dropAccepted);
  EXPECT_FALSE(highlighted);
  state().setBusy(false);
  QCoreApplication::processEvents();
  EXPECT_FALSE(state().loaded());
}

TEST_F(FirstWindowTest, UndoesTypingInTheFieldFirstAndTheCropThen) {
  open(folder / "photo.png");
  type(Edge::top, QStringLiteral("6"));
  type(Edge::left, QStringLiteral("12"));
  EXPECT_EQ(crop(), (CropMargins{12, 6, 0, 0}));
  QTest::keyClick(field(Edge::left), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(crop(), (CropMargins{0, 6, 0, 0}));
  EXPECT_TRUE(field(Edge::left)->hasFocus());
  while (field(Edge::left)->isUndoAvailable()) {
    QTest::keyClick(field(Edge::left), Qt::Key_Z, Qt::ControlModifier);
  }
  QTest::keyClick(field(Edge::left), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(crop(), CropMargins());
  EXPECT_FALSE(field(Edge::left)->hasFocus());
  QCoreApplication::processEvents();  // The menu follows.
  QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(crop(), (CropMargins{0, 6, 0, 0}));
}

TEST_F(FirstWindowTest, LeadsTheKeyboardThroughTheFieldsToTheExport) {
  open(folder / "photo.png");
  EXPECT_EQ(qobject_cast<QLineEdit*>(editor->focusWidget()), nullptr);
  QTest::keyClick(editor, Qt::Key_Tab);
  EXPECT_TRUE(editor->view()->canvas()->overlay()->hasFocus());
  // On through the handles and the fields beside the crop.
  for (size_t step = 0; step < kCropHandles.size() + CropMargins::kEdges.size(); ++step) {
    QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  }
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(field(Edge::top)->hasFocus());
  QTest::keyClicks(editor->focusWidget(), QStringLiteral("4"));
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(field(Edge::left)->hasFocus());
  QTest::keyClicks(editor->focusWidget(), QStringLiteral("3"));
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  QTest::keyClicks(editor->focusWidget(), QStringLiteral("50"));
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(state().outputWidth(), 50);
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(field(Edge::right)->hasFocus());
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(field(Edge::bottom)->hasFocus());
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(footer()->exportButton()->hasFocus());
  QTest::keyClick(editor->focusWidget(), Qt::Key_Return);
  ReviewWindow* review = waitFor<ReviewWindow>();
  ASSERT_NE(review, nullptr);
  EXPECT_EQ(review->document().summary().resolution, QSizeF(50, 86));
}

TEST_F(FirstWindowTest, CropsOnTheCanvasWithTheMouse) {
  open(folder / "photo.png");
  CanvasScrollView& canvas = *editor->view()->canvas();
  ASSERT_TRUE(QTest::qWaitFor([&] { return canvas.canvas()->isPictureShown(); }));
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return state().camera().zoom == canvas.camera().shownZoom(); }));
  EXPECT_TRUE(state().camera().fit);

  CropOverlayView* const overlay = canvas.overlay();
  const CanvasProjection& projection = overlay->overlay().projection();
  const QPoint corner = projection.toView(QPointF(0, 0)).toPoint() - QPoint(6, 6);
  const QPoint inner = projection.toView(QPointF(30, 20)).toPoint() - QPoint(6, 6);
  QTest::mousePress(overlay, Qt::LeftButton, {}, corner);
  QTest::mouseEvent(QTest::MouseMove, overlay, Qt::LeftButton, {}, (corner + inner) / 2);
  QTest::mouseEvent(QTest::MouseMove, overlay, Qt::LeftButton, {}, inner);
  QTest::mouseRelease(overlay, Qt::LeftButton, {}, inner);
  EXPECT_EQ(crop(), (CropMargins{30, 20, 0, 0}));
  QCoreApplication::processEvents();  // The panel follows.
  EXPECT_EQ(field(Edge::left)->text(), QStringLiteral("30"));
  QTest::keyClick(overlay, Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(crop().left, 30);  // It touches the right edge already.
  QTest::keyClick(overlay, Qt::Key_Up);
  EXPECT_EQ(crop(), (CropMargins{30, 19, 0, 1}));
  QCoreApplication::processEvents();
  QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
  QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(crop(), CropMargins());
}

TEST_F(FirstWindowTest, LooksAtThePictureInOtherWays) {
  open(folder / "photo.png");
  CanvasScrollView& canvas = *editor->view()->canvas();
  const auto rests = [&] { return !canvas.camera().isMoving(); };
  QTest::keyClick(editor, Qt::Key_1, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return rests() && canvas.camera().shownZoom() == 1; }));
  QTest::keyClick(editor, Qt::Key_Plus, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return rests() && canvas.camera().shownZoom() > 1; }));
  QTest::keyClick(editor, Qt::Key_0, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return rests() && canvas.camera().wish().fit; }));
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return state().camera().zoom == canvas.camera().shownZoom(); }));

  QTest::keyClick(editor, Qt::Key_P, Qt::ControlModifier);
  EXPECT_TRUE(state().previewOnly());
  ASSERT_TRUE(QTest::qWaitFor([&] { return canvas.canvas()->editingOpacity() == 0; }));
  QTest::keyClick(editor, Qt::Key_Escape);
  EXPECT_FALSE(state().previewOnly());
  ASSERT_TRUE(QTest::qWaitFor([&] { return canvas.canvas()->editingOpacity() == 1; }));
}

TEST_F(FirstWindowTest, OpensEachFurtherFileInAWindowOfItsOwn) {
  testing::savePng(folder / "other.png", 30, 20);
  EditorWindow* first = windows.openFile(folder / "photo.png");
  EditorWindow* second = windows.openFile(folder / "other.png");
  ASSERT_NE(first, second);
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return first->view()->state().loaded() && second->view()->state().loaded(); }));
  first->view()->state().history().setCrop({1, 1, 1, 1});
  EXPECT_EQ(second->view()->state().history().crop(), CropMargins());
  EditorWindow* empty = windows.openEditor();
  EXPECT_EQ(windows.openFile(folder / "photo.png"), empty);
}

TEST_F(FirstWindowTest, AsksForEachReviewBeforeItQuits) {
  open(folder / "photo.png");
  ASSERT_NE(exportCrop(), nullptr);
  ASSERT_TRUE(activate(editor));
  QTest::mouseClick(footer()->exportButton(), Qt::LeftButton);
  ASSERT_TRUE(QTest::qWaitFor([] { return visible<ReviewWindow>().size() == 2; }));
  QEvent quit(QEvent::Quit);
  QApplication::sendEvent(qApp, &quit);
  answer(QMessageBox::Discard);
  ASSERT_TRUE(QTest::qWaitFor([] { return visible<ReviewWindow>().size() == 1; }));
  answer(QMessageBox::Cancel);
  EXPECT_EQ(visible<ReviewWindow>().size(), 1);
  EXPECT_TRUE(editor->isVisible());
}

TEST_F(FirstWindowTest, StaysWhenQuittingIsCancelledAtAReview) {
  open(folder / "photo.png");
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  QTest::keyClick(review, Qt::Key_Q, Qt::ControlModifier);
  answer(QMessageBox::Cancel);
  EXPECT_TRUE(review->isVisible());
  EXPECT_TRUE(editor->isVisible());
}

}  // namespace
}  // namespace vantrel
