#include "controls/text_editing.h"

#include <gtest/gtest.h>

#include "controls/field_window.h"

namespace vantrel {
namespace {

TEST(TextEditing, CommitsWhatIsTypedInTheActiveWindow) {
  FieldWindow fields(1);
  ASSERT_TRUE(fields.isReady());
  QTest::mouseClick(&fields.width, Qt::LeftButton);
  EXPECT_TRUE(isEditingText());
  QTest::keyClicks(&fields.width, QStringLiteral("900"));
  endTextEditing();
  EXPECT_FALSE(isEditingText());
  EXPECT_EQ(fields.size().width(), 900);
  EXPECT_EQ(fields.steps(), 1);
}

TEST(TextEditing, CommitsWhatIsTypedInAWindowBehind) {
  FieldWindow fields(1);
  ASSERT_TRUE(fields.isReady());
  QTest::mouseClick(&fields.width, Qt::LeftButton);
  QTest::keyClicks(&fields.width, QStringLiteral("900"));
  QWidget front;
  front.show();
  front.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&front));
  ASSERT_TRUE(fields.width.isEditing());
  endTextEditing(fields.window);
  EXPECT_FALSE(fields.width.isEditing());
  EXPECT_EQ(fields.size().width(), 900);
  EXPECT_EQ(fields.steps(), 1);
}

}  // namespace
}  // namespace vantrel
