#include "controls/crop_reset_button.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "controls/field_window.h"

namespace vantrel {
namespace {

TEST(CropResetButton, IsHeardByItsTitleAndSeenAsReset) {
  const CropResetButton button(QStringLiteral("Reset Crop"));
  EXPECT_EQ(button.accessibleName(), QStringLiteral("Reset Crop"));
  EXPECT_EQ(button.toolTip(), QStringLiteral("Reset"));
  EXPECT_EQ(button.size(), QSize(24, 24));
  EXPECT_FALSE(button.icon().isNull());
  EXPECT_TRUE(button.text().isEmpty());
}

TEST(CropResetButton, EndsTheTypingBeforeItActs) {
  FieldWindow fields(1);
  CropResetButton button(QStringLiteral("Reset Crop"), &fields.window);
  button.show();
  ASSERT_TRUE(fields.isReady());
  int64_t stepsBefore = -1;
  QObject::connect(&button, &CropResetButton::clicked, &fields.window,
                   [&] { stepsBefore = fields.steps(); });
  QTest::mouseClick(&fields.width, Qt::LeftButton);
  QTest::keyClicks(&fields.width, QStringLiteral("900"));
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(fields.size().width(), 900);
  EXPECT_EQ(stepsBefore, 1);
}

}  // namespace
}  // namespace vantrel
