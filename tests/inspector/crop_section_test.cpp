#include "inspector/crop_section.h"

#include <QAbstractButton>
#include <iterator>
#include <random>
#include <vector>

#include "controls/crop_dimension_field.h"
#include "controls/crop_number_field.h"
#include "controls/crop_reset_button.h"
#include "controls/crop_undo_routing.h"
#include "controls/pixel_stepper.h"
#include "inspector/inspector_window.h"

namespace vantrel {
namespace {

using Edge = CropMargins::Edge;

class CropSectionTest : public testing::InspectorWindow {
 protected:
  CropSection* section() { return view.cropSection(); }
  CropNumberField* field(Edge edge) { return section()->marginField(edge); }
  PixelStepper* stepperOf(const QString& title) {
    for (PixelStepper* const stepper : section()->findChildren<PixelStepper*>()) {
      if (stepper->upButton()->accessibleName().endsWith(title)) return stepper;
    }
    return nullptr;
  }
  void more(const char* title) {
    QTest::mouseClick(stepperOf(QString::fromLatin1(title))->upButton(), Qt::LeftButton);
  }
  void less(const char* title) {
    QTest::mouseClick(stepperOf(QString::fromLatin1(title))->downButton(), Qt::LeftButton);
  }
  QString header() { return section()->outputSizeLabel()->text(); }
};

TEST_F(CropSectionTest, ShowsTheCropInNumbers) {
  openImage();
  history.setCrop({10, 20, 30, 40});
  show();
  EXPECT_EQ(header(), QStringLiteral("600 × 420 px"));
  EXPECT_EQ(section()->widthField()->text(), QStringLiteral("600"));
  EXPECT_EQ(section()->heightField()->text(), QStringLiteral("420"));
  EXPECT_EQ(field(Edge::top)->text(), QStringLiteral("20"));
}

TEST_F(CropSectionTest, LaysTheCropOutAsABoxModel) {
  openImage();
  show();
  const QRect top = placeOf(field(Edge::top)), bottom = placeOf(field(Edge::bottom));
  const QRect left = placeOf(field(Edge::left)), right = placeOf(field(Edge::right));
  const QRect box = placeOf(section()->widthField()->parentWidget()->parentWidget());
  EXPECT_EQ(box.width(), 132);
  EXPECT_EQ(top.x(), box.x());
  EXPECT_EQ(placeOf(stepperOf(QStringLiteral("Top"))).right(), box.right());
  EXPECT_EQ(placeOf(stepperOf(QStringLiteral("Bottom"))).right(), box.right());
  EXPECT_EQ(top.bottom() + 8, box.y() - 1);
  EXPECT_GT(bottom.y(), box.bottom());
  EXPECT_EQ(left.x(), 17);  // The hairline takes one point.
  EXPECT_EQ(placeOf(stepperOf(QStringLiteral("Left"))).right() + 8, box.x() - 1);
  EXPECT_EQ(right.x(), box.right() + 1 + 8);
  EXPECT_EQ(placeOf(stepperOf(QStringLiteral("Right"))).right(), InspectorView::kWidth - 17);
  EXPECT_EQ(left.y(), right.y());
  for (const QRect& place : {top, bottom, left, right})
    EXPECT_EQ(place.height(), 22);
}

TEST_F(CropSectionTest, StepsByOnePixelInAnImage) {
  openImage();
  show();
  more("Top");
  more("Left");
  more("Left");
  less("Left");
  EXPECT_EQ(history.crop(), (CropMargins{1, 1, 0, 0}));
  EXPECT_EQ(steps(), 4);
  less("Width");
  less("Height");
  EXPECT_EQ(header(), QStringLiteral("638 × 478 px"));
  EXPECT_EQ(steps(), 6);
  history.undo();
  EXPECT_EQ(section()->heightField()->text(), QStringLiteral("479"));
}

TEST_F(CropSectionTest, StepsByTwoPixelsInAVideo) {
  openVideo();
  show();
  more("Right");
  EXPECT_EQ(header(), QStringLiteral("638 × 480 px"));
  less("Height");
  EXPECT_EQ(header(), QStringLiteral("638 × 478 px"));
  EXPECT_EQ(steps(), 2);
}

TEST_F(CropSectionTest, AStepAtTheEndOfARangeIsNoEdit) {
  openImage();
  show();
  less("Top");
  less("Right");
  more("Width");
  more("Height");
  EXPECT_EQ(steps(), 0);
  history.setCrop({639, 0, 0, 0});
  more("Left");
  less("Width");
  EXPECT_EQ(steps(), 1);
}

TEST_F(CropSectionTest, AStepCommitsWhatIsBeingTypedFirst) {
  openImage();
  show();
  QTest::mouseClick(section()->heightField(), Qt::LeftButton);
  QTest::keyClicks(section()->heightField(), QStringLiteral("300"));
  less("Width");
  EXPECT_EQ(header(), QStringLiteral("639 × 300 px"));
  EXPECT_EQ(steps(), 2);
  history.undo();
  EXPECT_EQ(header(), QStringLiteral("640 × 300 px"));
  history.undo();
  EXPECT_EQ(header(), QStringLiteral("640 × 480 px"));
}

TEST_F(CropSectionTest, ATypedDimensionBeyondTheSourceBecomesTheSource) {
  openImage();
  history.setCrop({10, 20, 30, 40});
  show();
  QTest::mouseClick(section()->widthField(), Qt::LeftButton);
  QTest::keyClicks(section()->widthField(), QStringLiteral("9999"));
  QTest::keyClick(section()->widthField(), Qt::Key_Return);
  EXPECT_EQ(header(), QStringLiteral("640 × 420 px"));
  EXPECT_GT(section()->widthField()->flashOpacity(), 0);
}

TEST_F(CropSectionTest, ResetsTheCropInOneStep) {
  openVideo();
  const CropMargins full = history.crop();
  history.setCrop({10, 20, 30, 40});
  history.reset(history.value());
  show();
  QTest::mouseClick(section()->resetButton(), Qt::LeftButton);
  EXPECT_EQ(history.crop(), full);
  EXPECT_EQ(steps(), 1);
  QTest::mouseClick(section()->resetButton(), Qt::LeftButton);
  EXPECT_EQ(steps(), 1);
  history.undo();
  EXPECT_EQ(history.crop(), (CropMargins{10, 20, 30, 40}));
}

TEST_F(CropSectionTest, TakesNoEditWhileBusy) {
  openImage();
  history.setCrop({10, 20, 30, 40});
  show();
  setBusy(true);
  EXPECT_FALSE(field(Edge::left)->isEnabled());
  EXPECT_FALSE(section()->widthField()->isEnabled());
  EXPECT_FALSE(section()->resetButton()->isEnabled());
  more("Top");
  QTest::mouseClick(section()->resetButton(), Qt::LeftButton);
  EXPECT_EQ(history.crop(), (CropMargins{10, 20, 30, 40}));
  setBusy(false);
  more("Top");
  EXPECT_EQ(history.crop().top, 21);
}

TEST_F(CropSectionTest, ShowsDashesWithoutAFile) {
  show();
  EXPECT_EQ(header(), QStringLiteral("— × —"));
  EXPECT_FALSE(section()->isEnabled());
  for (const Edge edge : CropMargins::kEdges)
    EXPECT_TRUE(field(edge)->text().isEmpty());
  EXPECT_TRUE(section()->widthField()->text().isEmpty());
  EXPECT_TRUE(section()->heightField()->text().isEmpty());
  EXPECT_EQ(section()->heightField()->placeholderText(), QStringLiteral("—"));
}

TEST_F(CropSectionTest, NamesItsControls) {
  openImage();
  show();
  EXPECT_EQ(section()->resetButton()->accessibleName(), QStringLiteral("Reset Crop"));
  EXPECT_EQ(field(Edge::top)->accessibleName(), QStringLiteral("Top crop margin in pixels"));
  EXPECT_EQ(section()->widthField()->accessibleName(), QStringLiteral("Crop width in pixels"));
  for (const char* title : {"Top", "Left", "Width", "Height", "Right", "Bottom"})
    EXPECT_NE(stepperOf(QString::fromLatin1(title)), nullptr) << title;
}

TEST_F(CropSectionTest, StaysLegalAndUndoesWhateverIsDoneToIt) {
  openVideo();
  show();
  const CropMargins full = history.crop();
  std::vector<SelectingNumberField*> fields{section()->widthField(), section()->heightField()};
  for (const Edge edge : CropMargins::kEdges)
    fields.push_back(field(edge));
  const auto steppers = section()->findChildren<PixelStepper*>();
  const Qt::Key keys[] = {Qt::Key_Up,     Qt::Key_Down,  Qt::Key_Return, Qt::Key_Tab,
                          Qt::Key_Escape, Qt::Key_Enter, Qt::Key_Delete, Qt::Key_PageUp};
  const QString texts[] = {QStringLiteral("0"),   QStringLiteral("1"),  QStringLiteral("-3"),
                           QStringLiteral("301"), QStringLiteral("x"),  QStringLiteral(" "),
                           QStringLiteral("640"), QStringLiteral("+9"), QStringLiteral("99999")};
  std::mt19937 random(7);
  const auto among = [&random](size_t count) { return random() % count; };
  for (int action = 0; action < 600; ++action) {
    QWidget* focused = QApplication::focusWidget();
    if (!section()->isAncestorOf(focused)) focused = nullptr;
    switch (among(6)) {
      case 0:
        QTest::mouseClick(fields.at(among(fields.size())), Qt::LeftButton);
        break;
      case 1:
        if (focused) QTest::keyClicks(focused, texts[among(std::size(texts))]);
        break;
      case 2:
        if (focused) {
          QTest::keyClick(focused, keys[among(std::size(keys))],
                          among(3) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
        }
        break;
      case 3:
        QTest::mouseClick(
            among(2) == 0 ? steppers.at(among(6))->upButton() : steppers.at(among(6))->downButton(),
            Qt::LeftButton);
        break;
      case 4:
        if (among(10) == 0) QTest::mouseClick(section()->resetButton(), Qt::LeftButton);
        break;
      default:
        CropUndoRouting::perform(history, among(2) == 0);
    }
    const CropMargins& crop = history.crop();
    const QSizeF output = crop.rectangle(source.sourceSize).size();
    ASSERT_TRUE(crop.left >= 0 && crop.top >= 0 && crop.right >= 0 && crop.bottom >= 0) << action;
    ASSERT_TRUE(output.width() >= 2 && output.height() >= 2) << action;
    ASSERT_EQ(static_cast<int64_t>(output.width()) % 2, 0) << action;
    ASSERT_EQ(static_cast<int64_t>(output.height()) % 2, 0) << action;
  }
  section()->resetButton()->setFocus();
  for (const Edge edge : CropMargins::kEdges)
    EXPECT_EQ(field(edge)->text(), QString::number(history.crop()[edge]));
  while (history.canUndo())
    history.undo();
  EXPECT_EQ(history.crop(), full);
}

// The window shows an edit a little later, and keys can be faster.
TEST_F(CropSectionTest, ShowsItsOwnEditsAtOnce) {
  openImage();
  show();
  history.disconnect(&view);
  QTest::mouseClick(field(Edge::left), Qt::LeftButton);
  QTest::keyClicks(field(Edge::left), QStringLiteral("123"));
  QTest::keyClick(field(Edge::left), Qt::Key_Tab);
  ASSERT_TRUE(section()->widthField()->isEditing());
  EXPECT_EQ(section()->widthField()->text(), QStringLiteral("517"));
  QTest::keyClicks(section()->widthField(), QStringLiteral("417"));
  QTest::keyClick(section()->widthField(), Qt::Key_Tab);
  QTest::keyClick(section()->heightField(), Qt::Key_Tab);
  ASSERT_TRUE(field(Edge::right)->isEditing());
  EXPECT_EQ(field(Edge::right)->text(), QStringLiteral("50"));
}

}  // namespace
}  // namespace vantrel
