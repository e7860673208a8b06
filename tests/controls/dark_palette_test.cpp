#include "controls/dark_palette.h"

#include <gtest/gtest.h>

#include <QPalette>

namespace vantrel {
namespace {

bool isDarkWith(Qt::GlobalColor window, Qt::GlobalColor text) {
  QPalette palette;
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::WindowText, text);
  return isDark(palette);
}

TEST(DarkPalette, HasWindowsDarkerThanTheirText) {
  EXPECT_TRUE(isDarkWith(Qt::black, Qt::white));
  EXPECT_FALSE(isDarkWith(Qt::white, Qt::black));
  EXPECT_FALSE(isDarkWith(Qt::gray, Qt::gray));
}

}  // namespace
}  // namespace vantrel
