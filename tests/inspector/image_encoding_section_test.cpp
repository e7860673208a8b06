#include "inspector/image_encoding_section.h"

#include <QAbstractButton>

#include "controls/color_well.h"
#include "controls/crop_reset_button.h"
#include "controls/edit_slider.h"
#include "controls/segmented_control.h"
#include "inspector/inspector_window.h"

namespace vantrel {
namespace {

using Format = ImageEncodingSettings::Format;

class ImageEncodingSectionTest : public testing::InspectorWindow {
 protected:
  void SetUp() override { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
  ImageEncodingSection* section() { return view.imageEncodingSection(); }
  void choose(Format format) {
    QTest::mouseClick(section()->formatPicker()->segment(static_cast<int>(format)), Qt::LeftButton);
  }
  ImageEncodingSettings settings() const { return history.imageEncoding(); }
};

TEST_F(ImageEncodingSectionTest, HasForAPngTheFormatAlone) {
  openImage(true);
  show();
  EXPECT_EQ(textsIn(section()),
            (QStringList{QStringLiteral("Encoding"), QStringLiteral("Format")}));
  EXPECT_FALSE(section()->qualitySlider()->isVisible());
  EXPECT_FALSE(section()->fillWell()->isVisible());
  EXPECT_EQ(section()->formatPicker()->selected(), 0);
}

TEST_F(ImageEncodingSectionTest, HasForAJpegItsQuality) {
  openImage();
  show();
  choose(Format::jpeg);
  EXPECT_EQ(settings().format, Format::jpeg);
  EXPECT_EQ(steps(), 1);
  EXPECT_EQ(textsIn(section()), (QStringList{QStringLiteral("Encoding"), QStringLiteral("Format"),
                                             QStringLiteral("Quality"), QStringLiteral("90%")}));
  EXPECT_TRUE(section()->qualitySlider()->isVisible());
  EXPECT_FALSE(section()->fillWell()->isVisible());
}

TEST_F(ImageEncodingSectionTest, HasForAJpegWithTransparencyAFill) {
  openImage(true);
  show();
  choose(Format::jpeg);
  EXPECT_TRUE(section()->fillWell()->isVisible());
  EXPECT_EQ(section()->fillWell()->color(), QColor(Qt::white));
  EXPECT_EQ(section()->fillWell()->toolTip(), QStringLiteral("Fill transparent areas"));
  const QRect quality = placeOf(section()->qualityLabel());
  EXPECT_LT(quality.y(), placeOf(section()->qualitySlider()).y());
  EXPECT_LT(placeOf(section()->qualitySlider()).y(), placeOf(section()->fillWell()).y());
}

TEST_F(ImageEncodingSectionTest, KeepsWhatItHidesForAPng) {
  openImage(true);
  history.setImageEncoding({Format::jpeg, 0.4, {0, 0, 1}});
  show();
  choose(Format::png);
  EXPECT_EQ(settings(), (ImageEncodingSettings{Format::png, 0.4, {0, 0, 1}}));
  EXPECT_FALSE(section()->qualityLabel()->isVisible());
  choose(Format::jpeg);
  EXPECT_EQ(section()->qualityLabel()->text(), QStringLiteral("40%"));
  EXPECT_EQ(section()->fillWell()->color(), QColor(Qt::blue));
}

TEST_F(ImageEncodingSectionTest, MovesTheQualityByAHundredth) {
  openImage();
  history.setImageEncoding({Format::jpeg, 0.9, {}});
  history.reset(history.value());
  show();
  EditSlider* const slider = section()->qualitySlider();
  slider->setFocus();
  QTest::keyClick(slider, Qt::Key_Left);
  EXPECT_EQ(settings().quality, 0.89);
  EXPECT_EQ(section()->qualityLabel()->text(), QStringLiteral("89%"));
  EXPECT_EQ(steps(), 1);
  EXPECT_EQ(slider->accessibleName(), QStringLiteral("JPEG quality"));
  EXPECT_EQ(slider->toolTip(), QStringLiteral("Higher quality produces larger files"));
}

TEST_F(ImageEncodingSectionTest, ResetsTheQualityInOneStep) {
  openImage();
  history.setImageEncoding({Format::jpeg, 0.4, {0, 0, 1}});
  history.reset(history.value());
  show();
  QTest::mouseClick(section()->qualityReset(), Qt::LeftButton);
  EXPECT_EQ(settings(), (ImageEncodingSettings{Format::jpeg, 0.9, {0, 0, 1}}));
  EXPECT_EQ(steps(), 1);
  QTest::mouseClick(section()->qualityReset(), Qt::LeftButton);
  EXPECT_EQ(steps(), 1);
  EXPECT_EQ(section()->qualityReset()->accessibleName(), QStringLiteral("Reset Quality"));
}

TEST_F(ImageEncodingSectionTest, TakesAnOpaqueFillInOneStep) {
  openImage(true);
  history.setImageEncoding({Format::jpeg, 0.9, {}});
  history.reset(history.value());
  show();
  QTest::mouseClick(section()->fillWell(), Qt::LeftButton);
  QColorDialog* const dialog = section()->fillWell()->dialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_FALSE(dialog->testOption(QColorDialog::ShowAlphaChannel));
  dialog->setCurrentColor(QColor(255, 0, 51));
  dialog->accept();
  EXPECT_EQ(settings().background, (ImageBackground{1, 0, 0.2}));
  EXPECT_EQ(steps(), 1);
  EXPECT_EQ(section()->fillWell()->color(), QColor(255, 0, 51));
  QTest::mouseClick(section()->fillReset(), Qt::LeftButton);
  EXPECT_EQ(settings().background, ImageBackground());
  EXPECT_EQ(steps(), 2);
  EXPECT_EQ(section()->fillReset()->accessibleName(), QStringLiteral("Reset JPEG Background"));
}

TEST_F(ImageEncodingSectionTest, TakesNothingWhileBusy) {
  openImage();
  show();
  setBusy(true);
  EXPECT_FALSE(section()->isEnabled());
  choose(Format::jpeg);
  EXPECT_EQ(settings().format, Format::png);
}

}  // namespace
}  // namespace vantrel
