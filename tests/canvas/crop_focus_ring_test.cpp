#include "canvas/crop_focus_ring.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vantrel {
namespace {

const QRectF kSelection(100, 50, 200, 120);
const QColor kColor(10, 20, 30);

bool isCovered(const std::vector<ColoredRectangle>& ring, const QPointF& pixel) {
  return std::any_of(ring.begin(), ring.end(), [&](const ColoredRectangle& part) {
    return part.rect.contains(pixel + QPointF(0.5, 0.5));
  });
}

TEST(CropFocusRing, LiesTwoPointsWideAroundAHandle) {
  const auto ring = cropFocusRing(CropHandle::right, kSelection, kColor, 1);
  // The handle takes up 300 to 308 and 98 to 122.
  EXPECT_TRUE(isCovered(ring, {298, 110}));
  EXPECT_TRUE(isCovered(ring, {299, 110}));
  EXPECT_FALSE(isCovered(ring, {297, 110}));
  EXPECT_FALSE(isCovered(ring, {300, 110}));
  EXPECT_TRUE(isCovered(ring, {308, 97}));
  EXPECT_TRUE(isCovered(ring, {309, 123}));
  EXPECT_FALSE(isCovered(ring, {310, 123}));
  for (const ColoredRectangle& part : ring)
    EXPECT_EQ(part.color, kColor);
}

TEST(CropFocusRing, LiesAroundTheCropAndItsHandles) {
  const auto ring = cropFocusRing(std::nullopt, kSelection, kColor, 1);
  EXPECT_FALSE(isCovered(ring, {87, 110}));
  EXPECT_TRUE(isCovered(ring, {86, 110}));
  EXPECT_TRUE(isCovered(ring, {85, 110}));
  EXPECT_FALSE(isCovered(ring, {84, 110}));
  EXPECT_TRUE(isCovered(ring, {85, 35}));
  EXPECT_TRUE(isCovered(ring, {314, 184}));
}

TEST(CropFocusRing, PartsDoNotOverlap) {
  for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
    const auto ring =
        cropFocusRing(CropHandle::topLeft, kSelection.translated(0.3, 0.7), kColor, ratio);
    for (size_t one = 0; one < ring.size(); ++one) {
      EXPECT_EQ(ring[one].rect, QRectF(ring[one].rect.toRect()));
      for (size_t other = 0; other < one; ++other) {
        EXPECT_FALSE(ring[one].rect.intersects(ring[other].rect));
      }
    }
  }
}

}  // namespace
}  // namespace vantrel
