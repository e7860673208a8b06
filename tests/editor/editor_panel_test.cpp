#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "controls/crop_dimension_field.h"
#include "controls/crop_number_field.h"
#include "controls/edit_slider.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "inspector/crop_section.h"
#include "inspector/image_encoding_section.h"
#include "inspector/inspector_view.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

/// What happens to a window while something in its panel is being edited.
class EditorPanelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    testing::saveJpeg(folder / "photo.jpg", 40, 30);
    testing::savePng(folder / "other.png", 60, 50);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    load("photo.jpg");
  }
  void load(const char* name) {
    window.view()->loader().loadMedia(folder / name);
    waitLoaded();
  }
  void waitLoaded() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
    settle();
  }
  /// What has changed is shown at the next turn of the event loop.
  static void settle() { QCoreApplication::processEvents(); }
  void type(SelectingNumberField* field, const QString& text) {
    QTest::mouseClick(field, Qt::LeftButton);
    QTest::keyClicks(field, text);
    ASSERT_TRUE(field->isEditing());
  }
  void expectNothingEdited() {
    for (const auto* field : window.findChildren<SelectingNumberField*>())
      EXPECT_FALSE(field->isEditing());
  }

  EditorState& state() { return window.view()->state(); }
  EditHistory& history() { return state().history(); }
  int64_t steps() { return history().manager().count(); }
  InspectorView* inspector() { return window.view()->inspector(); }
  CropNumberField* left() {
    return inspector()->cropSection()->marginField(CropMargins::Edge::left);
  }
  CropDimensionField* width() { return inspector()->cropSection()->widthField(); }

  testing::TemporaryFolder folder;
  EditorWindow window{[](const FinishedExport&) {}};
};

TEST_F(EditorPanelTest, AFileThatComesInMidEditIsNotEdited) {
  for (SelectingNumberField* const field :
       {static_cast<SelectingNumberField*>(left()), static_cast<SelectingNumberField*>(width())}) {
    load("photo.jpg");
    type(field, QStringLiteral("7"));
    load("other.png");
    expectNothingEdited();
    EXPECT_EQ(history().crop(), CropMargins());
    EXPECT_FALSE(history().canUndo());
    EXPECT_EQ(left()->text(), QStringLiteral("0"));
    EXPECT_EQ(width()->text(), QStringLiteral("60"));
  }
}

TEST_F(EditorPanelTest, AnEditStaysAsAStepWhereTheNextFileFailsToOpen) {
  type(left(), QStringLiteral("7"));
  load("missing.png");
  EXPECT_EQ(history().crop(), (CropMargins{7, 0, 0, 0}));
  EXPECT_EQ(steps(), 1);
  state().setOpenError({});
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  type(width(), QStringLiteral("20"));
  EXPECT_EQ(state().outputWidth(), 33) << "typing alone changes no width";
  load("missing.png");
  EXPECT_EQ(state().outputWidth(), 20);
  EXPECT_EQ(steps(), 2);
  expectNothingEdited();
}

TEST_F(EditorPanelTest, AnExportTakesWhatIsTypedAlsoBehindAnotherWindow) {
  type(width(), QStringLiteral("20"));
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_EQ(state().outputWidth(), 40) << "it waits for the field to be left";
  window.view()->exports().exportMedia();
  EXPECT_EQ(state().outputWidth(), 20);
  expectNothingEdited();
  waitLoaded();
}

TEST_F(EditorPanelTest, ClosingTheFileInMidEditLeavesNoEdit) {
  QWidget other;
  for (const bool behindAnother : {false, true}) {
    load("photo.jpg");
    type(width(), QStringLiteral("7"));
    if (behindAnother) {
      other.show();
      other.activateWindow();
      ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    }
    window.view()->loader().closeMedia();
    settle();
    expectNothingEdited();
    EXPECT_EQ(history().crop(), CropMargins());
    EXPECT_FALSE(history().canUndo());
    EXPECT_TRUE(width()->text().isEmpty());
  }
}

TEST_F(EditorPanelTest, HidingThePanelInMidEditTakesTheEdit) {
  type(width(), QStringLiteral("20"));
  state().toggleInspector();
  settle();
  EXPECT_FALSE(inspector()->isVisible());
  EXPECT_EQ(state().outputWidth(), 20);
  EXPECT_EQ(steps(), 1);
  expectNothingEdited();
}

TEST_F(EditorPanelTest, ADragOfASliderEndsWithItsFile) {
  EditSlider* const slider = inspector()->imageEncodingSection()->qualitySlider();
  const auto move = [slider](const QPoint& point) {
    QMouseEvent event(QEvent::MouseMove, point, slider->mapToGlobal(point), Qt::NoButton,
                      Qt::LeftButton, {});
    QCoreApplication::sendEvent(slider, &event);
  };
  QTest::mousePress(slider, Qt::LeftButton, {}, slider->rect().center());
  const double dragged = history().imageEncoding().quality;
  ASSERT_LT(dragged, 0.7);
  testing::saveJpeg(folder / "next.jpg", 20, 10);
  load("next.jpg");
  EXPECT_EQ(history().imageEncoding().quality, 0.9);
  move(QPoint(2, slider->height() / 2));
  QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(2, slider->height() / 2));
  EXPECT_EQ(history().imageEncoding().quality, 0.9);
  EXPECT_FALSE(history().canUndo());
  // No transaction is left open.
  QTest::keyClick(slider, Qt::Key_Left);
  EXPECT_EQ(steps(), 1);
}

}  // namespace
}  // namespace vantrel
