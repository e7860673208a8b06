#include "editor/editor_tool_bar.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <array>
#include <vector>

#include "controls/symbol_icon.h"
#include "editor/crop_menu_bar.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "playback/zoom_controls.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

class EditorToolBarTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::savePng(folder / "photo.png", 40, 30);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  void load() {
    window.view()->loader().loadMedia(folder / "photo.png");
    ASSERT_TRUE(QTest::qWaitFor([this] { return state().loaded() && !state().busy(); }));
    QCoreApplication::processEvents();
  }
  EditorState& state() { return window.view()->state(); }
  EditorToolBar& bar() { return *window.toolBar(); }
  void click(QAction* action) {
    QTest::mouseClick(bar().widgetForAction(action), Qt::LeftButton);
    QCoreApplication::processEvents();
  }
  void expectEnabled(bool open, bool undo, bool redo, bool rest) {
    QCoreApplication::processEvents();
    EXPECT_EQ(bar().openAction()->isEnabled(), open);
    EXPECT_EQ(bar().undoAction()->isEnabled(), undo);
    EXPECT_EQ(bar().redoAction()->isEnabled(), redo);
    EXPECT_EQ(bar().previewAction()->isEnabled(), rest);
    EXPECT_EQ(bar().zoom()->isEnabled(), rest);
    EXPECT_EQ(bar().inspectorAction()->isEnabled(), rest);
  }

  testing::TemporaryFolder folder;
  EditorWindow window{[](const FinishedExport&) {}};
};

TEST_F(EditorToolBarTest, HasItsItemsInOrder) {
  std::vector<QString> labels, names;
  for (const QAction* action : bar().actions()) {
    if (action->text().isEmpty()) continue;
    labels.push_back(action->text());
    names.push_back(action->objectName());
  }
  EXPECT_EQ(labels, (std::vector<QString>{QStringLiteral("Open…"), QStringLiteral("Undo"),
                                          QStringLiteral("Redo"), QStringLiteral("Preview Crop"),
                                          QStringLiteral("Zoom"), QStringLiteral("Inspector")}));
  EXPECT_EQ(names, (std::vector<QString>{
                       {}, {}, {}, QStringLiteral("preview"), QStringLiteral("zoom"), {}}));
  EXPECT_EQ(bar().zoom()->accessibleName(), QStringLiteral("Zoom"));
}

TEST_F(EditorToolBarTest, TellsWhatItsItemsDoAndTheirKeys) {
  EXPECT_EQ(bar().openAction()->toolTip(), QStringLiteral("Open an image or video (Ctrl+O)"));
  EXPECT_EQ(bar().undoAction()->toolTip(), QStringLiteral("Undo (Ctrl+Z)"));
  EXPECT_EQ(bar().redoAction()->toolTip(), QStringLiteral("Redo (Ctrl+Shift+Z)"));
  EXPECT_EQ(bar().previewAction()->toolTip(), QStringLiteral("Preview the crop (Ctrl+P)"));
  EXPECT_EQ(bar().inspectorAction()->toolTip(),
            QStringLiteral("Show or hide the inspector (Ctrl+Alt+I)"));
}

TEST_F(EditorToolBarTest, ShowsASymbolForEachItem) {
  const auto expectSymbol = [this](const QAction* action, const char* name) {
    const QSize size(18, 18);
    const QImage expected = symbolIcon(QLatin1String(name), bar().palette()).pixmap(size).toImage();
    EXPECT_FALSE(expected.isNull());
    EXPECT_EQ(action->icon().pixmap(size).toImage(), expected) << name;
  };
  load();
  expectSymbol(bar().openAction(), "folder-open");
  expectSymbol(bar().undoAction(), "undo-2");
  expectSymbol(bar().redoAction(), "redo-2");
  expectSymbol(bar().previewAction(), "eye");
  expectSymbol(bar().inspectorAction(), "panel-right");
  click(bar().previewAction());
  expectSymbol(bar().previewAction(), "eye-off");
  EXPECT_EQ(bar().previewAction()->text(), QStringLiteral("Exit Preview"));
}

TEST_F(EditorToolBarTest, EnablesWhatTheStateAllows) {
  expectEnabled(true, false, false, false);
  load();
  expectEnabled(true, false, false, true);
  state().history().setCrop({1, 0, 0, 0});
  expectEnabled(true, true, false, true);
  state().history().undo();
  expectEnabled(true, false, true, true);
  state().history().redo();
  state().history().setCrop({2, 0, 0, 0});
  state().history().undo();
  expectEnabled(true, true, true, true);
  state().setBusy(true);
  expectEnabled(false, false, false, false);
  bar().setState(nullptr);
  EXPECT_FALSE(bar().openAction()->isEnabled());
  bar().setState(&state());
}

TEST_F(EditorToolBarTest, TextBeingTypedEnablesOnlyTheMenus) {
  load();
  auto* const field = window.view()->findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  field->setFocus();
  QCoreApplication::processEvents();
  EXPECT_TRUE(window.commands()->action(CropCommand::undo)->isEnabled());
  EXPECT_FALSE(bar().undoAction()->isEnabled());
  EXPECT_FALSE(bar().redoAction()->isEnabled());
}

TEST_F(EditorToolBarTest, ItsButtonsDoWhatTheySay) {
  load();
  click(bar().previewAction());
  EXPECT_TRUE(state().previewOnly());
  click(bar().previewAction());
  EXPECT_FALSE(state().previewOnly());
  click(bar().inspectorAction());
  EXPECT_FALSE(state().showInspector());
  click(bar().inspectorAction());
  EXPECT_TRUE(state().showInspector());
  state().history().setCrop({1, 0, 0, 0});
  QCoreApplication::processEvents();
  click(bar().undoAction());
  EXPECT_EQ(state().history().crop(), CropMargins());
  click(bar().redoAction());
  EXPECT_EQ(state().history().crop(), (CropMargins{1, 0, 0, 0}));
}

}  // namespace
}  // namespace vantrel
