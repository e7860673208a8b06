#include <QDragEnterEvent>
#include <QFileOpenEvent>
#include <QLabel>
#include <QMimeData>
#include <QUrl>

#include "controls/color_well.h"
#include "controls/crop_reset_button.h"
#include "controls/segmented_control.h"
#include "editor/file_names.h"
#include "inspector/crop_canvas_section.h"
#include "inspector/image_encoding_section.h"
#include "journey/journey.h"
#include "journey/saved_picture.h"
#include "review/save_dialog.h"

namespace vantrel {
namespace {

using testing::visible;
using testing::waitFor;
using testing::waitUntilGone;

class FirstWindowTest : public testing::Journey {
 protected:
  void SetUp() override {
    Journey::SetUp();
    testing::savePng(folder / "photo.png", 120, 90);
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

  bool dropAccepted = false;
  bool highlighted = false;
};

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
    testing::expectPattern(folder / review->document().suggestedFileName().toStdString(), 120, 90,
                           0, 0);
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
  ASSERT_TRUE(testing::activate(dialog));
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
  testing::expectPattern(folder / "photo.png", 120, 10, 0, 80);
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
  testing::expectPattern(folder / "named.png", 120, 90, 0, 0);
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
  EXPECT_TRUE(testing::sessionFiles().empty());
}

TEST_F(FirstWindowTest, ClosingTheWindowEndsItsExport) {
  testing::savePng(folder / "large.png", 4000, 3000);
  open(folder / "large.png");
  click(footer()->exportButton());
  ASSERT_TRUE(state().busy());
  editor->close();
  ASSERT_TRUE(waitUntilGone<EditorWindow>());
  ASSERT_TRUE(QTest::qWaitFor([] { return testing::sessionFiles().empty(); }));
  EXPECT_TRUE(visible<ReviewWindow>().isEmpty());
  EXPECT_TRUE(visible<QMessageBox>().isEmpty());
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
  testing::expectPattern(folder / "closed.png", 120, 10, 0, 80);
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
  ASSERT_TRUE(testing::activate(editor));
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
  ASSERT_TRUE(testing::activate(editor));
  drop(photo());
  EXPECT_TRUE(dropAccepted);
  EXPECT_TRUE(highlighted);
  EXPECT_FALSE(state().dropTargeted());
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().loaded() && !state().busy(); }));
  EXPECT_EQ(state().sourceSize(), QSizeF(120, 90));
}

TEST_F(FirstWindowTest, RefusesADropWhileBusy) {
  editor = windows.openEditor();
  ASSERT_TRUE(testing::activate(editor));
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
  EXPECT_TRUE(inspector()->cropSection()->resetButton()->hasFocus());
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
  EXPECT_TRUE(inspector()->imageEncodingSection()->formatPicker()->segment(0)->hasFocus());
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(inspector()->canvasSection()->colorWell()->hasFocus());
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(inspector()->canvasSection()->resetButton()->hasFocus());
  QTest::keyClick(editor->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(footer()->exportButton()->hasFocus());
  QTest::keyClick(editor->focusWidget(), Qt::Key_Return);
  ReviewWindow* review = waitFor<ReviewWindow>();
  ASSERT_NE(review, nullptr);
  EXPECT_EQ(review->document().summary().resolution, QSizeF(50, 86));
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

TEST_F(FirstWindowTest, LeavesAFileOfNoPlaceOnThisComputerAlone) {
  editor = windows.openEditor();
  QFileOpenEvent event(QUrl(QStringLiteral("https://example.org/photo.png")));
  QApplication::sendEvent(qApp, &event);
  EXPECT_EQ(visible<EditorWindow>().size(), 1);
  EXPECT_FALSE(state().busy());
  QFileOpenEvent local(photo());
  QApplication::sendEvent(qApp, &local);
  EXPECT_EQ(visible<EditorWindow>().size(), 1);
  EXPECT_TRUE(state().busy());
}

TEST_F(FirstWindowTest, GoesFromAnyNameToAnyName) {
  for (const std::string& name : testing::unusualNames()) {
    SCOPED_TRACE(name);
    const std::filesystem::path path = folder / (name + ".png");
    testing::savePng(path, 20, 10);
    ASSERT_NO_FATAL_FAILURE(open(path));
    EXPECT_EQ(editor->windowHandle()->title().toStdString(), name + ".png");
    ReviewWindow* const review = exportCrop();
    ASSERT_NE(review, nullptr);
    EXPECT_EQ(review->document().displayName().toStdString(), name + "-framed");
    // Over the source itself, since no name can be longer.
    review->document().save(path);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !review->document().isUnsaved(); }));
    testing::expectPattern(path, 20, 10, 0, 0);
    review->close();
    ASSERT_TRUE(waitUntilGone<ReviewWindow>());
    delete editor;
  }
  EXPECT_EQ(testing::namesIn(folder.path()).size(), testing::unusualNames().size() + 1);
}

TEST_F(FirstWindowTest, SaysThatANameIsTooLong) {
  open(folder / "photo.png");
  ReviewWindow* const review = exportCrop();
  ASSERT_NE(review, nullptr);
  review->document().save(folder / (std::string(252, 'x') + ".png"));
  auto* const alert = waitFor<QMessageBox>();
  ASSERT_NE(alert, nullptr);
  EXPECT_TRUE(
      alert->informativeText().endsWith(QStringLiteral("could not be saved: File name too long")))
      << alert->informativeText().toStdString();
  answer(QMessageBox::Ok);
  EXPECT_TRUE(review->document().isUnsaved());
}

TEST_F(FirstWindowTest, AsksForEachReviewBeforeItQuits) {
  open(folder / "photo.png");
  ASSERT_NE(exportCrop(), nullptr);
  ASSERT_TRUE(testing::activate(editor));
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
