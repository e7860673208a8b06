#include "editor/crop_menu_bar.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>
#include <memory>
#include <string>
#include <vector>

#include "controls/crop_number_field.h"
#include "editor/application_windows.h"
#include "editor/command_rows.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "inspector/crop_section.h"
#include "inspector/inspector_view.h"
#include "review/review_window.h"
#include "support/film_folder.h"
#include "support/picture_files.h"

namespace vantrel {
namespace {

using testing::CommandRow;
using testing::kCommandRows;
using testing::kInspectorRow;
using testing::kSituations;
using testing::Situation;
using Format = ImageEncodingSettings::Format;

constexpr Qt::KeyboardModifiers kCtrl = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers kShift = kCtrl | Qt::ShiftModifier;
constexpr Qt::KeyboardModifiers kAlt = kCtrl | Qt::AltModifier;

template <class Window>
QList<Window*> visible() {
  QList<Window*> found;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* match = qobject_cast<Window*>(widget);
    if (match && match->isVisible()) found << match;
  }
  return found;
}

/// Windows as the program opens them, with real files in real players.
class CropMenuBarTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    s_files = std::make_unique<testing::FilmFolder>();
    s_files->make("film.mp4");
    s_files->makeHdr("hdr.mov", "smpte2084");
    testing::savePng(*s_files / "photo.png", 40, 30);
    testing::saveJpeg(*s_files / "photo.jpg", 40, 30);
  }
  static void TearDownTestSuite() { s_files.reset(); }
  void TearDown() override {
    qDeleteAll(visible<EditorWindow>());
    qDeleteAll(visible<ReviewWindow>());
  }

  static bool activate(QWidget* window) {
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
  }
  void openEmpty() {
    editor = windows.openEditor();
    window = editor;
    ASSERT_TRUE(activate(window));
  }
  void open(const char* name) {
    openEmpty();
    editor->view()->loader().loadMedia(*s_files / name);
    ASSERT_TRUE(QTest::qWaitFor([this] { return state().loaded() && !state().busy(); }));
    QCoreApplication::processEvents();
  }
  ReviewWindow* openReview(const char* name) {
    const auto file = *s_files / (std::string("Vantrel-") + name);
    std::filesystem::copy_file(*s_files / name, file,
                               std::filesystem::copy_options::overwrite_existing);
    ReviewWindow* const review = windows.openReview(
        {TemporaryExport(file), {}, ContentType::ofFile(file), QStringLiteral("done")});
    window = review;
    EXPECT_TRUE(activate(window));
    return review;
  }
  /// Something to undo and something to redo.
  void edit() {
    EditHistory& history = state().history();
    CropEdit start = history.value();
    start.encoding.megabitsPerSecond = 5;
    start.imageEncoding.quality = 0.5;
    history.reset(start);
    history.setCrop({2, 2, 0, 0});
    history.setCrop({4, 4, 0, 0});
    history.undo();
  }
  void enter(Situation situation) {
    switch (situation) {
      case testing::inReview:
        openReview("photo.png");
        return;
      case testing::empty:
      case testing::emptyBusy:
        openEmpty();
        break;
      case testing::png:
        open("photo.png");
        break;
      case testing::jpeg:
      case testing::jpegBusy:
        open("photo.jpg");
        break;
      case testing::video:
      case testing::videoBusy:
        open("film.mp4");
        break;
      case testing::hdr:
        open("hdr.mov");
        break;
    }
    if (state().loaded()) edit();
    if (situation & (testing::emptyBusy | testing::jpegBusy | testing::videoBusy)) {
      state().setBusy(true);
    }
    QCoreApplication::processEvents();
  }
  void expect(const CommandRow& row, Situation situation) {
    const QAction* const action = bar()->action(row.command);
    EXPECT_EQ(action->text(), QString::fromUtf8(row.title));
    EXPECT_EQ(action->isVisible(), (row.visible & situation) != 0)
        << row.title << " in situation " << situation;
    EXPECT_EQ(action->isEnabled(), (row.enabled & situation) != 0)
        << row.title << " in situation " << situation;
    EXPECT_EQ(action->shortcut().toString(QKeySequence::PortableText), QLatin1String(row.key));
  }

  EditorState& state() { return editor->view()->state(); }
  CropMenuBar* bar() { return qobject_cast<CropMenuBar*>(window->menuWidget()); }
  QAction* action(CropCommand command) { return bar()->action(command); }
  CropNumberField* leftField() {
    return editor->view()->inspector()->cropSection()->marginField(CropMargins::Edge::left);
  }
  /// As the window system brings a key.
  void press(int key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window->windowHandle(), static_cast<Qt::Key>(key), modifiers);
  }
  QMenu* menu(int index) { return bar()->actions().at(index)->menu(); }
  /// Opens a menu of the bar by a click.
  QMenu* openMenu(int index) {
    QTest::mouseClick(bar(), Qt::LeftButton, {},
                      bar()->actionGeometry(bar()->actions().at(index)).center());
    EXPECT_TRUE(QTest::qWaitFor([&] { return menu(index)->isVisible(); }));
    return menu(index);
  }
  static void choose(QMenu* menu, QAction* item) {
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(item).center());
  }
  /// What a menu shows, with dividers as "-".
  static std::vector<std::string> shown(const QMenu* menu) {
    std::vector<std::string> titles;
    for (const QAction* item : menu->actions()) {
      if (!item->isVisible()) continue;
      titles.push_back(item->isSeparator() ? "-" : item->text().toStdString());
    }
    return titles;
  }
  [[nodiscard]] bool waitForFileDialog(const QWidget* parent) {
    return QTest::qWaitFor(
        [&] { return parent->findChild<QFileDialog*>() && visible<QFileDialog>().size() == 1; });
  }

  static inline std::unique_ptr<testing::FilmFolder> s_files;
  ApplicationWindows windows;
  EditorWindow* editor = nullptr;
  /// Whose menus are looked at.
  QMainWindow* window = nullptr;
};

using Titles = std::vector<std::string>;

TEST_F(CropMenuBarTest, ShowsTheTableInEverySituation) {
  for (const Situation situation : kSituations) {
    enter(situation);
    ASSERT_NE(bar(), nullptr);
    for (const CommandRow& row : kCommandRows)
      expect(row, situation);
    if (situation != testing::inReview) expect(kInspectorRow, situation);
  }
}

TEST_F(CropMenuBarTest, HasItsMenusInOrder) {
  open("photo.jpg");
  Titles titles;
  QSet<QString> mnemonics;
  for (const QAction* item : bar()->actions()) {
    titles.push_back(item->text().toStdString());
    mnemonics.insert(QKeySequence::mnemonic(item->text()).toString());
  }
  EXPECT_EQ(titles, (Titles{"&File", "&Edit", "&View", "&Crop", "E&ncode"}));
  EXPECT_EQ(mnemonics.size(), 5);
  EXPECT_EQ(shown(menu(0)), (Titles{"New Window", "New Tab", "-", "Open…", "Close File", "-",
                                    "Save…", "Export Crop…", "-", "Close Window", "Quit"}));
  EXPECT_EQ(shown(menu(1)), (Titles{"Undo", "Redo"}));
  EXPECT_EQ(shown(menu(2)),
            (Titles{"Zoom In", "Zoom Out", "Zoom to Fit", "Actual Size", "-", "Hide Inspector"}));
  EXPECT_EQ(shown(menu(3)), (Titles{"Preview Crop", "Reset Crop"}));
  EXPECT_EQ(shown(menu(4)),
            (Titles{"Format", "-", "Increase Quality", "Decrease Quality", "Reset Quality"}));
  EXPECT_EQ(shown(action(CropCommand::format)->menu()), (Titles{"PNG", "JPEG"}));
}

TEST_F(CropMenuBarTest, EncodesVideosWithOtherItems) {
  open("film.mp4");
  EXPECT_EQ(shown(menu(4)), (Titles{"Codec", "-", "Increase Bitrate", "Decrease Bitrate",
                                    "Match Original Bitrate"}));
  EXPECT_EQ(shown(action(CropCommand::codec)->menu()), (Titles{"H.264", "HEVC"}));
  EXPECT_TRUE(action(CropCommand::hevc)->isChecked());
}

TEST_F(CropMenuBarTest, ExplainsSave) {
  openEmpty();
  EXPECT_TRUE(menu(0)->toolTipsVisible());
  EXPECT_EQ(action(CropCommand::save)->toolTip(),
            QStringLiteral("Save a finished export from its review window."));
}

TEST_F(CropMenuBarTest, NoItemMovesForItsName) {
  openEmpty();
  for (const CommandRow& row : kCommandRows) {
    EXPECT_EQ(action(row.command)->menuRole(),
              row.command == CropCommand::quit ? QAction::QuitRole : QAction::NoRole)
        << row.title;
  }
}

TEST_F(CropMenuBarTest, KeysOpenWindowsAndTabs) {
  openEmpty();
  QSignalSpy tabs(bar(), &CropMenuBar::newTabRequested);
  press(Qt::Key_T, kCtrl);
  EXPECT_EQ(tabs.count(), 1);
  press(Qt::Key_N, kCtrl);
  EXPECT_EQ(visible<EditorWindow>().size(), 2);
}

TEST_F(CropMenuBarTest, KeysOpenAndCloseTheFileAndTheWindow) {
  open("photo.png");
  press(Qt::Key_O, kCtrl);
  ASSERT_TRUE(waitForFileDialog(editor));
  editor->findChild<QFileDialog*>()->reject();
  ASSERT_TRUE(activate(editor));
  press(Qt::Key_W, kAlt);
  EXPECT_FALSE(state().loaded());
  press(Qt::Key_W, kCtrl);
  EXPECT_TRUE(visible<EditorWindow>().isEmpty());
}

TEST_F(CropMenuBarTest, KeysQuitFromAnEditor) {
  openEmpty();
  QSignalSpy quits(bar(), &CropMenuBar::quitRequested);
  EditorWindow* const quitting = editor;
  openReview("photo.png");
  ASSERT_TRUE(activate(quitting));
  QTest::keyClick(quitting->windowHandle(), Qt::Key_Q, kCtrl);
  EXPECT_EQ(quits.count(), 1);
  ASSERT_TRUE(QTest::qWaitFor([] { return !visible<QMessageBox>().isEmpty(); }))
      << "the review is not saved";
}

TEST_F(CropMenuBarTest, KeysExportToAReviewAndSaveFromIt) {
  open("photo.png");
  press(Qt::Key_E, kShift);
  ASSERT_TRUE(QTest::qWaitFor([] { return visible<ReviewWindow>().size() == 1; }));
  ReviewWindow* const review = visible<ReviewWindow>().first();
  QTest::keyClick(editor->windowHandle(), Qt::Key_S, kCtrl);
  window = review;
  ASSERT_TRUE(activate(review));
  press(Qt::Key_S, kCtrl);
  EXPECT_TRUE(waitForFileDialog(review));
}

TEST_F(CropMenuBarTest, KeysLookAtTheFileInOtherWays) {
  open("film.mp4");
  press(Qt::Key_1, kCtrl);
  EXPECT_EQ(state().camera().zoom, 1);
  EXPECT_FALSE(state().camera().fit);
  press(Qt::Key_Plus, kCtrl);
  const double larger = state().camera().zoom;
  EXPECT_GT(larger, 1);
  press(Qt::Key_Equal, kCtrl);
  EXPECT_GT(state().camera().zoom, larger);
  press(Qt::Key_Minus, kCtrl);
  EXPECT_EQ(state().camera().zoom, larger);
  press(Qt::Key_0, kCtrl);
  EXPECT_TRUE(state().camera().fit);
  press(Qt::Key_I, kAlt);
  EXPECT_FALSE(state().showInspector());
  QCoreApplication::processEvents();
  EXPECT_EQ(action(CropCommand::inspector)->text(), QStringLiteral("Show Inspector"));
  press(Qt::Key_I, kAlt);
  EXPECT_TRUE(state().showInspector());
  press(Qt::Key_P, kCtrl);
  EXPECT_TRUE(state().previewOnly());
  QCoreApplication::processEvents();
  EXPECT_EQ(action(CropCommand::preview)->text(), QStringLiteral("Exit Preview"));
  press(Qt::Key_P, kCtrl);
  EXPECT_FALSE(state().previewOnly());
}

TEST_F(CropMenuBarTest, KeysUndoAndRedo) {
  open("photo.png");
  edit();
  press(Qt::Key_Z, kCtrl);
  EXPECT_EQ(state().history().crop(), CropMargins());
  press(Qt::Key_Z, kShift);
  EXPECT_EQ(state().history().crop(), (CropMargins{2, 2, 0, 0}));
  press(Qt::Key_Y, kCtrl);
  EXPECT_EQ(state().history().crop(), (CropMargins{4, 4, 0, 0}));
}

TEST_F(CropMenuBarTest, UndoAndRedoHaveTheOtherKeysOfTheSystemToo) {
  openEmpty();
  const auto expectKeys = [this](CropCommand command, QKeySequence::StandardKey standard) {
    const QList<QKeySequence> keys = action(command)->shortcuts();
    EXPECT_EQ(QSet<QKeySequence>(keys.begin(), keys.end()).size(), keys.size());
    for (const QKeySequence& key : QKeySequence::keyBindings(standard))
      EXPECT_TRUE(keys.contains(key)) << key.toString().toStdString();
  };
  expectKeys(CropCommand::undo, QKeySequence::Undo);
  expectKeys(CropCommand::redo, QKeySequence::Redo);
}

TEST_F(CropMenuBarTest, AnEmptyEditorLetsTheKeysOfFilesPass) {
  openEmpty();
  for (const int key : {Qt::Key_1, Qt::Key_Plus, Qt::Key_P, Qt::Key_Z})
    press(key, kCtrl);
  press(Qt::Key_I, kAlt);
  EXPECT_EQ(state().camera(), EditorState::Camera());
  EXPECT_FALSE(state().previewOnly());
  EXPECT_TRUE(state().showInspector());
  EXPECT_EQ(action(CropCommand::inspector)->text(), QStringLiteral("Hide Inspector"));
}

TEST_F(CropMenuBarTest, ChoosesFromOpenMenus) {
  open("film.mp4");
  edit();
  QCoreApplication::processEvents();
  choose(openMenu(3), action(CropCommand::resetCrop));
  EXPECT_EQ(state().history().crop(), CropMargins());
  choose(openMenu(4), action(CropCommand::increaseBitrate));
  EXPECT_EQ(state().history().bitrate(), 5.5);
  choose(openMenu(4), action(CropCommand::decreaseBitrate));
  EXPECT_EQ(state().history().bitrate(), 5);
  choose(openMenu(4), action(CropCommand::matchOriginalBitrate));
  EXPECT_EQ(state().history().bitrate(), state().originalBitrate());
  press(Qt::Key_Z, kCtrl);
  EXPECT_EQ(state().history().bitrate(), 5) << "one edit";
}

TEST_F(CropMenuBarTest, ChoosesAFormatWithTheKeyboard) {
  open("photo.png");
  press(Qt::Key_N, Qt::AltModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return menu(4)->isVisible(); }));
  QMenu* const formats = action(CropCommand::format)->menu();
  QTest::keyClick(menu(4), Qt::Key_Right);
  ASSERT_TRUE(QTest::qWaitFor([&] { return formats->isVisible(); }));
  EXPECT_EQ(formats->activeAction(), action(CropCommand::png));
  QTest::keyClick(formats, Qt::Key_Down);
  QTest::keyClick(formats, Qt::Key_Return);
  EXPECT_EQ(state().history().imageEncoding().format, Format::jpeg);
  EXPECT_TRUE(action(CropCommand::jpeg)->isChecked());
  EXPECT_FALSE(action(CropCommand::png)->isChecked());
  EXPECT_TRUE(action(CropCommand::resetQuality)->isEnabled());
  press(Qt::Key_Z, kCtrl);
  QCoreApplication::processEvents();
  EXPECT_TRUE(action(CropCommand::png)->isChecked());
  EXPECT_FALSE(action(CropCommand::resetQuality)->isEnabled());
}

TEST_F(CropMenuBarTest, HdrVideosHaveNoH264) {
  open("hdr.mov");
  action(CropCommand::h264)->trigger();
  bar()->perform(CropCommand::h264);
  EXPECT_EQ(state().history().codec(), EncodingSettings::Codec::hevc);
  EXPECT_TRUE(action(CropCommand::matchOriginalBitrate)->isEnabled());
}

TEST_F(CropMenuBarTest, UndoServesTheTextBeingTypedAndOnlyOnce) {
  open("photo.png");
  EXPECT_FALSE(action(CropCommand::undo)->isEnabled());
  QTest::mouseClick(leftField(), Qt::LeftButton);
  ASSERT_FALSE(state().history().canUndo());
  EXPECT_TRUE(action(CropCommand::undo)->isEnabled());
  EXPECT_TRUE(action(CropCommand::redo)->isEnabled());
  QSignalSpy undone(action(CropCommand::undo), &QAction::triggered);
  QTest::keyClicks(leftField(), QStringLiteral("7"));
  QTest::keyClick(leftField(), Qt::Key_Backspace);
  QTest::keyClicks(leftField(), QStringLiteral("9"));
  EXPECT_EQ(leftField()->text(), QStringLiteral("9"));
  press(Qt::Key_Z, kCtrl);
  EXPECT_EQ(undone.count(), 1);
  EXPECT_NE(leftField()->text(), QStringLiteral("9"));
  EXPECT_TRUE(leftField()->hasFocus());
  press(Qt::Key_Y, kCtrl);
  EXPECT_EQ(leftField()->text(), QStringLiteral("9"));
}

TEST_F(CropMenuBarTest, TypingGoesOnWhileAMenuIsOpen) {
  open("photo.png");
  QTest::mouseClick(leftField(), Qt::LeftButton);
  for (const bool byName : {true, false}) {
    QTest::keyClicks(leftField(), QStringLiteral("7"));
    ASSERT_NE(state().history().crop(), CropMargins());
    if (byName) {
      press(Qt::Key_E, Qt::AltModifier);
    } else {
      for (const bool isDown : {true, false}) {
        QTest::simulateEvent(leftField(), isDown, Qt::Key_Alt, {}, {}, false);
      }
      ASSERT_TRUE(bar()->hasFocus());
      press(Qt::Key_Right, {});
      press(Qt::Key_Down, {});
    }
    ASSERT_TRUE(QTest::qWaitFor([this] { return menu(1)->isVisible(); }));
    EXPECT_TRUE(action(CropCommand::undo)->isEnabled());
    EXPECT_TRUE(action(CropCommand::redo)->isEnabled());
    menu(1)->setActiveAction(action(CropCommand::undo));
    QTest::keyClick(menu(1), Qt::Key_Return);
    EXPECT_TRUE(leftField()->hasFocus());
    EXPECT_EQ(leftField()->text(), QStringLiteral("0"));
    EXPECT_EQ(state().history().crop(), CropMargins());
  }
}

TEST_F(CropMenuBarTest, AnyFieldLeavesTheKeysToTheMenus) {
  open("photo.png");
  edit();
  auto* const field = new QLineEdit(editor);
  field->show();
  field->setFocus();
  QCoreApplication::processEvents();
  press(Qt::Key_1, kCtrl);
  EXPECT_FALSE(state().camera().fit);
  EXPECT_TRUE(field->hasFocus());
  press(Qt::Key_Z, kCtrl);
  EXPECT_EQ(state().history().crop(), CropMargins()) << "with no typing to undo";
  EXPECT_FALSE(field->hasFocus());
}

TEST_F(CropMenuBarTest, AWindowBehindKnowsItsOwnField) {
  open("photo.png");
  leftField()->setFocus();
  CropMenuBar* const behind = bar();
  openReview("photo.jpg");
  EXPECT_TRUE(behind->action(CropCommand::undo)->isEnabled());
  EXPECT_FALSE(action(CropCommand::undo)->isEnabled());
  leftField()->clearFocus();
  behind->updateCommands();
  EXPECT_FALSE(behind->action(CropCommand::undo)->isEnabled());
}

TEST_F(CropMenuBarTest, NoStateIsStaleAtTheKey) {
  open("photo.png");
  ASSERT_TRUE(action(CropCommand::preview)->isEnabled());
  // Straight to the widget, so that no event comes between.
  const auto pressAtOnce = [this] {
    QTest::keyClick(static_cast<QWidget*>(editor), Qt::Key_P, kCtrl);
  };
  state().setBusy(true);
  EXPECT_TRUE(action(CropCommand::preview)->isEnabled()) << "still";
  action(CropCommand::preview)->trigger();
  pressAtOnce();
  EXPECT_FALSE(state().previewOnly());
  EXPECT_FALSE(action(CropCommand::preview)->isEnabled());
  state().setBusy(false);
  EXPECT_FALSE(action(CropCommand::preview)->isEnabled()) << "still";
  pressAtOnce();
  EXPECT_TRUE(state().previewOnly());
}

TEST_F(CropMenuBarTest, NoStateIsStaleInAMenuThatOpens) {
  open("photo.png");
  state().setPreviewOnly(true);
  state().setBusy(true);
  QMenu* const crop = openMenu(3);
  EXPECT_EQ(action(CropCommand::preview)->text(), QStringLiteral("Exit Preview"));
  EXPECT_FALSE(action(CropCommand::resetCrop)->isEnabled());
  state().setBusy(false);
  QCoreApplication::processEvents();
  EXPECT_TRUE(action(CropCommand::resetCrop)->isEnabled()) << "while it is open";
  crop->close();
}

TEST_F(CropMenuBarTest, FollowsTheEditorThatItIsGiven) {
  open("photo.png");
  EditorView other(QUuid::createUuid(), [](const FinishedExport&) {});
  bar()->setEditor(&other);
  EXPECT_FALSE(action(CropCommand::preview)->isEnabled());
  EXPECT_EQ(shown(menu(4)).front(), "Codec");
  bar()->setEditor(editor->view());
  EXPECT_TRUE(action(CropCommand::preview)->isEnabled());
  bar()->setEditor(nullptr);
  EXPECT_FALSE(action(CropCommand::newTab)->isEnabled());
  {
    EditorView passing(QUuid::createUuid(), [](const FinishedExport&) {});
    bar()->setEditor(&passing);
    EXPECT_TRUE(action(CropCommand::newTab)->isEnabled());
  }
  EXPECT_FALSE(action(CropCommand::newTab)->isEnabled());
  bar()->setEditor(editor->view());
}

TEST_F(CropMenuBarTest, ClosesATabWhereThereAreSeveral) {
  openEmpty();
  bar()->setInTabs(true);
  EXPECT_EQ(action(CropCommand::closeWindow)->text(), QStringLiteral("Close Tab"));
  bar()->setInTabs(false);
  EXPECT_EQ(action(CropCommand::closeWindow)->text(), QStringLiteral("Close Window"));
}

TEST_F(CropMenuBarTest, SaveIsForTheReviewInFront) {
  openEmpty();
  CropMenuBar* const behind = bar();
  EXPECT_FALSE(behind->action(CropCommand::save)->isEnabled());
  openReview("photo.png");
  EXPECT_TRUE(action(CropCommand::save)->isEnabled());
  EXPECT_TRUE(behind->action(CropCommand::save)->isEnabled());
  CropMenuBar* const ofReview = bar();
  ASSERT_TRUE(activate(editor));
  EXPECT_FALSE(ofReview->action(CropCommand::save)->isEnabled());
  EXPECT_FALSE(behind->action(CropCommand::save)->isEnabled());
}

TEST_F(CropMenuBarTest, AReviewThatFillsTheScreenKeepsItsKeys) {
  ReviewWindow* const review = openReview("film.mp4");
  press(Qt::Key_F, {});
  ASSERT_TRUE(review->isFullScreen());
  EXPECT_FALSE(bar()->isVisible());
  press(Qt::Key_N, kCtrl);
  EXPECT_EQ(visible<EditorWindow>().size(), 1);
  ASSERT_TRUE(activate(review));
  press(Qt::Key_S, kCtrl);
  ASSERT_TRUE(waitForFileDialog(review));
  review->findChild<QFileDialog*>()->reject();
  ASSERT_TRUE(activate(review));
  press(Qt::Key_Escape, {});
  EXPECT_FALSE(review->isFullScreen());
  EXPECT_TRUE(bar()->isVisible());
  press(Qt::Key_W, kCtrl);
  EXPECT_NE(review->findChild<QMessageBox*>(), nullptr) << "it is not saved";
}

}  // namespace
}  // namespace vantrel
