#include "inspector/crop_canvas_section.h"

#include <optional>
#include <vector>

#include "controls/color_well.h"
#include "controls/crop_reset_button.h"
#include "inspector/inspector_window.h"

namespace vantrel {
namespace {

class CropCanvasSectionTest : public testing::InspectorWindow {
 protected:
  CropCanvasSectionTest() {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QObject::connect(&view, &InspectorView::canvasColorChanged, &view,
                     [this](const std::optional<QColor>& color) { wanted.push_back(color); });
    openImage();
    source.canvasColor = QColor(51, 51, 51);
  }
  CropCanvasSection* section() { return view.canvasSection(); }

  std::vector<std::optional<QColor>> wanted;
};

TEST_F(CropCanvasSectionTest, ShowsTheColorOfTheWindow) {
  show();
  EXPECT_EQ(textsIn(section()),
            (QStringList{QStringLiteral("Canvas"), QStringLiteral("Background")}));
  EXPECT_EQ(section()->colorWell()->color(), QColor(51, 51, 51));
  EXPECT_EQ(section()->colorWell()->toolTip(), QStringLiteral("Canvas background"));
  EXPECT_EQ(section()->resetButton()->accessibleName(), QStringLiteral("Reset Background"));
}

TEST_F(CropCanvasSectionTest, WantsAColorWithoutAnEdit) {
  show();
  QTest::mouseClick(section()->colorWell(), Qt::LeftButton);
  ASSERT_NE(section()->colorWell()->dialog(), nullptr);
  section()->colorWell()->dialog()->setCurrentColor(QColor(1, 2, 3));
  section()->colorWell()->dialog()->accept();
  QTest::mouseClick(section()->resetButton(), Qt::LeftButton);
  ASSERT_EQ(wanted.size(), 2U);
  EXPECT_EQ(wanted[0], QColor(1, 2, 3));
  EXPECT_FALSE(wanted[1]);
  EXPECT_EQ(steps(), 0);
}

TEST_F(CropCanvasSectionTest, StaysUsableWhileBusy) {
  show();
  setBusy(true);
  EXPECT_TRUE(section()->isEnabled());
  QTest::mouseClick(section()->resetButton(), Qt::LeftButton);
  EXPECT_EQ(wanted.size(), 1U);
}

}  // namespace
}  // namespace vantrel
