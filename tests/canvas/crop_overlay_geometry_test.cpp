#include "canvas/crop_overlay_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace vantrel {
namespace {

using CropOverlayGeometry::handleRect;
using CropOverlayGeometry::snappedToDevice;

TEST(CropOverlayGeometry, PlacesEachHandleOutsideTheSelection) {
  const QRectF selection(100, 200, 60, 40);
  const std::map<CropHandle, QRectF> expected{
      {CropHandle::topLeft, {88, 188, 12, 12}},      {CropHandle::top, {118, 192, 24, 8}},
      {CropHandle::topRight, {160, 188, 12, 12}},    {CropHandle::right, {160, 208, 8, 24}},
      {CropHandle::bottomRight, {160, 240, 12, 12}}, {CropHandle::bottom, {118, 240, 24, 8}},
      {CropHandle::bottomLeft, {88, 240, 12, 12}},   {CropHandle::left, {92, 208, 8, 24}}};
  ASSERT_EQ(kCropHandles.size(), expected.size());
  for (const CropHandle handle : kCropHandles) {
    EXPECT_EQ(handleRect(handle, selection), expected.at(handle));
    EXPECT_FALSE(handleRect(handle, selection).intersects(selection));
  }
}

TEST(CropOverlayGeometry, KeepsHandlesTheirSizeAroundAnEmptySelection) {
  EXPECT_EQ(handleRect(CropHandle::top, QRectF(50, 50, 0, 0)), QRectF(38, 42, 24, 8));
}

TEST(CropOverlayGeometry, SnapsEdgesToWholeDevicePixels) {
  for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
    QTransform toDevice = QTransform::fromScale(ratio, ratio);
    toDevice *= QTransform::fromTranslate(0.5, 109.5);
    const QRectF device =
        toDevice.mapRect(snappedToDevice(QRectF(10.3, 20.7, 33.3, 12.6), toDevice));
    for (const double edge : {device.left(), device.top(), device.right(), device.bottom()}) {
      EXPECT_NEAR(edge, std::round(edge), 1e-9) << ratio;
    }
    EXPECT_NEAR(device.width(), 33.3 * ratio, 1);
  }
}

TEST(CropOverlayGeometry, KeepsOneDevicePixelOfAThinRectangle) {
  const QRectF snapped = snappedToDevice(QRectF(10.2, 5, 0.1, 0), QTransform::fromScale(2, 2));
  EXPECT_EQ(snapped.size(), QSizeF(0.5, 0.5));
}

}  // namespace
}  // namespace vantrel
