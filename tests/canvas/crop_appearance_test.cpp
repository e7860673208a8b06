#include "canvas/crop_appearance.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

QPalette paletteOf(const QColor& window, const QColor& text) {
  QPalette palette;
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::WindowText, text);
  return palette;
}

TEST(CropAppearance, HasTheColoursOfTheCrop) {
  EXPECT_EQ(CropAppearance::exportAccent(), QColor(225, 0, 0));
  EXPECT_EQ(CropAppearance::cropBorder(), CropAppearance::exportAccent());
  EXPECT_EQ(CropAppearance::cropHandles(), QColor(255, 255, 255));
  EXPECT_NEAR(CropAppearance::excludedArea().alphaF(), 0.45, 1e-4);
  EXPECT_EQ(CropAppearance::excludedArea().rgb(), QColor(Qt::black).rgb());
}

TEST(CropAppearance, ChoosesTheCanvasByThePalette) {
  EXPECT_EQ(CropAppearance::canvas(paletteOf(Qt::black, Qt::white)).red(), 51);
  EXPECT_EQ(CropAppearance::canvas(paletteOf(Qt::white, Qt::black)).red(), 199);
  EXPECT_EQ(CropAppearance::canvas(paletteOf(Qt::gray, Qt::gray)).red(), 199);
}

}  // namespace
}  // namespace vantrel
