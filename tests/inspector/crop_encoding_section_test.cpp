#include "inspector/crop_encoding_section.h"

#include <QAbstractButton>

#include "controls/crop_reset_button.h"
#include "controls/edit_slider.h"
#include "controls/segmented_control.h"
#include "inspector/inspector_window.h"

namespace vantrel {
namespace {

using Codec = EncodingSettings::Codec;

class CropEncodingSectionTest : public testing::InspectorWindow {
 protected:
  CropEncodingSection* section() { return view.videoEncodingSection(); }
  SegmentedControl* picker() { return section()->codecPicker(); }
  EditSlider* slider() { return section()->bitrateSlider(); }
  void choose(Codec codec) {
    QTest::mouseClick(picker()->segment(static_cast<int>(codec)), Qt::LeftButton);
  }
};

TEST_F(CropEncodingSectionTest, ChoosesACodecInOneStep) {
  openVideo();
  show();
  EXPECT_EQ(picker()->selected(), 1);
  choose(Codec::h264);
  EXPECT_EQ(history.codec(), Codec::h264);
  EXPECT_EQ(steps(), 1);
  history.undo();
  EXPECT_EQ(picker()->selected(), 1);
}

TEST_F(CropEncodingSectionTest, OffersOnlyHevcForHdr) {
  openVideo(true);
  show();
  EXPECT_FALSE(picker()->segment(0)->isEnabled());
  EXPECT_TRUE(picker()->segment(1)->isEnabled());
  choose(Codec::h264);
  EXPECT_EQ(history.codec(), Codec::hevc);
  EXPECT_EQ(steps(), 0);
}

TEST_F(CropEncodingSectionTest, RefusesH264ForHdrHoweverItIsAskedFor) {
  openVideo(true);
  show();
  Q_EMIT picker()->chosen(0);
  EXPECT_EQ(history.codec(), Codec::hevc);
  EXPECT_EQ(picker()->selected(), 1);
}

TEST_F(CropEncodingSectionTest, OffersBothCodecsForSdr) {
  openVideo(true);
  show();
  source.sourceIsHDR = false;
  view.setSource(source);
  EXPECT_TRUE(picker()->segment(0)->isEnabled());
  EXPECT_TRUE(picker()->segment(1)->isEnabled());
  EXPECT_EQ(picker()->toolTip(),
            QStringLiteral("HEVC supports HDR. H.264 is available for SDR videos only."));
}

TEST_F(CropEncodingSectionTest, ShowsTheBitrate) {
  openVideo();
  history.setBitrate(24);
  show();
  EXPECT_EQ(section()->bitrateLabel()->text(), QStringLiteral("24.00 Mbps"));
  EXPECT_EQ(slider()->number(), 24);
  EXPECT_EQ(slider()->accessibleName(), QStringLiteral("Video bitrate in Mbps"));
  EXPECT_EQ(slider()->toolTip(),
            QStringLiteral("Higher bitrate preserves more detail and produces larger files."));
}

TEST_F(CropEncodingSectionTest, HasARangeThatHoldsTheSource) {
  openVideo();
  source.sourceMbps = 60;
  show();
  EXPECT_EQ(slider()->scale().lower, 0.5);
  EXPECT_EQ(slider()->scale().upper, 60);
  source.sourceMbps = 0.2;
  view.setSource(source);
  EXPECT_EQ(slider()->scale().lower, 0.2);
  EXPECT_EQ(slider()->scale().upper, 40);
}

TEST_F(CropEncodingSectionTest, MovesByHalfAMegabit) {
  openVideo();
  history.setBitrate(8);
  history.reset(history.value());
  show();
  slider()->setFocus();
  QTest::keyClick(slider(), Qt::Key_Right);
  EXPECT_EQ(history.bitrate(), 8.5);
  EXPECT_EQ(section()->bitrateLabel()->text(), QStringLiteral("8.50 Mbps"));
  EXPECT_EQ(steps(), 1);
}

TEST_F(CropEncodingSectionTest, LeavesABitrateOutsideTheRangeUntilItMoves) {
  openVideo();
  history.setBitrate(900);
  show();
  EXPECT_EQ(section()->bitrateLabel()->text(), QStringLiteral("900.00 Mbps"));
  EXPECT_EQ(history.bitrate(), 900);
}

TEST_F(CropEncodingSectionTest, MatchesTheOriginalBitrateInOneStep) {
  openVideo();
  show();
  QTest::mouseClick(section()->matchButton(), Qt::LeftButton);
  EXPECT_EQ(history.bitrate(), 8);
  EXPECT_EQ(steps(), 1);
  QTest::mouseClick(section()->matchButton(), Qt::LeftButton);
  EXPECT_EQ(steps(), 1);
  EXPECT_EQ(section()->matchButton()->accessibleName(), QStringLiteral("Match Original Bitrate"));
}

TEST_F(CropEncodingSectionTest, MatchesTheDefaultWhereNothingWasMeasured) {
  openVideo();
  history.setBitrate(8);
  source.sourceMbps = 0;
  show();
  QTest::mouseClick(section()->matchButton(), Qt::LeftButton);
  EXPECT_EQ(history.bitrate(), 2.5);
}

TEST_F(CropEncodingSectionTest, TakesNothingWhileBusyOrEmpty) {
  show();
  EXPECT_TRUE(section()->isVisible());
  EXPECT_FALSE(section()->isEnabled());
  EXPECT_EQ(section()->bitrateLabel()->text(), QStringLiteral("—"));
  openVideo();
  setBusy(true);
  EXPECT_FALSE(section()->isEnabled());
  choose(Codec::h264);
  EXPECT_EQ(history.codec(), Codec::hevc);
  setBusy(false);
  EXPECT_TRUE(section()->isEnabled());
}

TEST_F(CropEncodingSectionTest, ClosesTheDragThatAnExportInterrupts) {
  openVideo();
  show();
  QTest::mousePress(slider(), Qt::LeftButton, {}, slider()->rect().center());
  setBusy(true);
  EXPECT_EQ(steps(), 1);
  setBusy(false);
  history.setCodec(Codec::h264);
  EXPECT_EQ(steps(), 2);
}

}  // namespace
}  // namespace vantrel
