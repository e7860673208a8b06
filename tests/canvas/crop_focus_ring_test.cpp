#include "canvas/crop_focus_ring.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vantrel {
namespace {

const QRectF kSelection(100, 50, 200, 120);
const FocusColors kColors{QColor(10, 20, 30), QColor(200, 210, 220)};

QColor colorAt(const std::vector<ColoredRectangle>& ring, const QPointF& pixel) {
  const auto part = std::find_if(ring.begin(), ring.end(), [&](const ColoredRectangle& candidate) {
    return candidate.rect.contains(pixel + QPointF(0.5, 0.5));
  });
  return part == ring.end() ? QColor() : part->color;
}

bool isCovered(const std::vector<ColoredRectangle>& ring, const QPointF& pixel) {
  return colorAt(ring, pixel).isValid();
}

TEST(CropFocusRing, LiesTwoPointsWideAroundAHandle) {
  const auto ring = cropFocusRing(CropHandle::right, kSelection, kColors, 1);
  // The handle takes up 300 to 308 and 98 to 122.
  EXPECT_TRUE(isCovered(ring, {298, 110}));
  EXPECT_TRUE(isCovered(ring, {299, 110}));
  EXPECT_FALSE(isCovered(ring, {297, 110}));
  EXPECT_FALSE(isCovered(ring, {300, 110}));
  EXPECT_TRUE(isCovered(ring, {308, 97}));
  EXPECT_TRUE(isCovered(ring, {309, 123}));
  EXPECT_FALSE(isCovered(ring, {310, 123}));
  for (const ColoredRectangle& part : ring)
    EXPECT_EQ(part.color, kColors.ring);
}

TEST(CropFocusRing, LiesAroundTheCropAndItsHandles) {
  const auto ring = cropFocusRing(std::nullopt, kSelection, kColors, 1);
  EXPECT_FALSE(isCovered(ring, {88, 110}));
  EXPECT_EQ(colorAt(ring, {87, 110}), kColors.edge);
  EXPECT_EQ(colorAt(ring, {86, 110}), kColors.ring);
  EXPECT_EQ(colorAt(ring, {85, 110}), kColors.ring);
  EXPECT_FALSE(isCovered(ring, {84, 110}));
  EXPECT_EQ(colorAt(ring, {85, 35}), kColors.ring);
  EXPECT_EQ(colorAt(ring, {314, 184}), kColors.ring);
}

TEST(CropFocusRing, PartsDoNotOverlap) {
  for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
    const auto ring = cropFocusRing(std::nullopt, kSelection.translated(0.3, 0.7), kColors, ratio);
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
