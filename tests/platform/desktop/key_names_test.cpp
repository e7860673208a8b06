#include "platform/desktop/key_names.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(KeyText, IsInTheNotationOfTheSystem) {
#ifdef Q_OS_MACOS
  EXPECT_EQ(keyText(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E)), u"⇧⌘E");
#else
  EXPECT_EQ(keyText(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E)), u"Ctrl+Shift+E");
#endif
}

TEST(KeyText, OfNoKeysIsEmpty) {
  EXPECT_TRUE(keyText(QKeySequence()).isEmpty());
}

TEST(CommandKeyName, IsThatOfTheSystem) {
#ifdef Q_OS_MACOS
  EXPECT_EQ(commandKeyName(), u"CMD");
#else
  EXPECT_EQ(commandKeyName(), u"Ctrl");
#endif
}

}  // namespace
}  // namespace vantrel
