#include "canvas/crop_overlay_geometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <random>

#include "canvas/crop_appearance.h"

namespace vantrel {
namespace {

using CropOverlayGeometry::edgeBand;
using CropOverlayGeometry::edgesOf;
using CropOverlayGeometry::handleRect;
using CropOverlayGeometry::rectangles;
using CropOverlayGeometry::snappedToDevice;
using Edge = CropMargins::Edge;

std::vector<QRectF> rectsOf(const std::vector<ColoredRectangle>& rectangles, const QColor& color) {
  std::vector<QRectF> result;
  for (const auto& [rect, its] : rectangles) {
    if (its == color) result.push_back(rect);
  }
  return result;
}

double areaOf(const QRectF& rect) {
  return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

double areaOf(const std::vector<QRectF>& rects) {
  double sum = 0;
  for (const QRectF& rect : rects)
    sum += areaOf(rect);
  return sum;
}

/// Whether the rectangles, none of which overlaps another, cover `outer` but for `inner`.
void expectSurround(const std::vector<QRectF>& rects, const QRectF& outer, const QRectF& inner) {
  EXPECT_LE(rects.size(), 4U);
  for (const QRectF& rect : rects) {
    EXPECT_TRUE(outer.contains(rect));
    EXPECT_EQ(areaOf(rect.intersected(inner)), 0);
    EXPECT_FALSE(rect.isEmpty());
    for (const QRectF& other : rects) {
      EXPECT_TRUE(&rect == &other || areaOf(rect.intersected(other)) == 0);
    }
  }
  EXPECT_EQ(areaOf(rects), areaOf(outer) - areaOf(outer.intersected(inner)));
}

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

TEST(CropOverlayGeometry, PutsTheEdgeAboveOrBelowFirstAtACorner) {
  const std::map<CropHandle, std::vector<Edge>> expected{
      {CropHandle::topLeft, {Edge::top, Edge::left}},         {CropHandle::top, {Edge::top}},
      {CropHandle::topRight, {Edge::top, Edge::right}},       {CropHandle::right, {Edge::right}},
      {CropHandle::bottomRight, {Edge::bottom, Edge::right}}, {CropHandle::bottom, {Edge::bottom}},
      {CropHandle::bottomLeft, {Edge::bottom, Edge::left}},   {CropHandle::left, {Edge::left}}};
  for (const CropHandle handle : kCropHandles)
    EXPECT_EQ(edgesOf(handle), expected.at(handle));
}

TEST(CropOverlayGeometry, LaysABandAlongEachWholeEdge) {
  const QRectF selection(100, 200, 60, 40);
  EXPECT_EQ(edgeBand(Edge::top, selection), QRectF(100, 194, 60, 9));
  EXPECT_EQ(edgeBand(Edge::bottom, selection), QRectF(100, 237, 60, 9));
  EXPECT_EQ(edgeBand(Edge::left, selection), QRectF(94, 200, 9, 40));
  EXPECT_EQ(edgeBand(Edge::right, selection), QRectF(157, 200, 9, 40));
}

TEST(CropOverlayGeometry, SnapsEdgesToWholeDevicePixels) {
  EXPECT_EQ(snappedToDevice(QRectF(10.3, 20.7, 33.3, 12.6), 1), QRectF(10, 21, 34, 12));
  EXPECT_EQ(snappedToDevice(QRectF(10.3, 20.7, 33.3, 12.6), 1.5), QRectF(15, 31, 50, 19));
  EXPECT_EQ(snappedToDevice(QRectF(-10.3, -20.7, 33.3, 12.6), 2), QRectF(-21, -41, 67, 25));
}

TEST(CropOverlayGeometry, SnapsHalvesTheSameWayOnBothSidesOfTheOrigin) {
  for (const double shift : {-40.0, 0.0, 40.0}) {
    EXPECT_EQ(snappedToDevice(QRectF(1.5 + shift, 2.5 + shift, 3, 3), 1),
              QRectF(1 + shift, 2 + shift, 3, 3));
  }
  // 1.5 device pixels for each source pixel, which thirds of points show only nearly.
  const CanvasProjection projection({100, 100}, {-40.0 / 3, 0}, 0.5);
  for (int x = 1; x < 100; x += 2) {
    const QRectF shown = snappedToDevice(projection.toView(QRectF(x, 0, 2, 2)), 3);
    EXPECT_EQ(shown, QRectF(-41 + (3 * x + 1) / 2, 0, 3, 3)) << x;
  }
}

TEST(CropOverlayGeometry, SnapsWhereNearestSamplingChangesToTheNextSourcePixel) {
  for (const double zoom : {1.0, 1.1, 1.5, 2.5, 2.828427, 10.0}) {
    for (int column = 0; column < 50; ++column) {
      const QRectF shown = snappedToDevice(QRectF(column * zoom, 0, zoom, 1), 1);
      EXPECT_EQ(std::floor((shown.left() + 0.5) / zoom + 1e-9), column);
      EXPECT_EQ(std::floor((shown.right() - 0.5) / zoom + 1e-9), column);
    }
  }
}

TEST(CropOverlayGeometry, KeepsOneDevicePixelOfAThinRectangle) {
  EXPECT_EQ(snappedToDevice(QRectF(10.2, 5, 0.1, 0), 2), QRectF(20, 10, 1, 1));
  EXPECT_EQ(snappedToDevice(QRectF(99.75, 5, 0.125, 3), 1), QRectF(99, 5, 1, 3));
}

TEST(CropOverlayGeometry, DrawsDimmingThenBorderThenHandles) {
  const CanvasProjection projection({100, 80}, {20, 30}, 2);
  const auto drawn = rectangles(projection, {10, 5, 20, 15}, 1);
  const QColor dim = CropAppearance::excludedArea();
  const QColor red = CropAppearance::cropBorder();
  const QColor white = CropAppearance::cropHandles();
  // The selection is at 40, 40, and 140 × 120 large.
  const std::vector<ColoredRectangle> expected{
      {{20, 30, 200, 10}, dim},    {{20, 160, 200, 30}, dim},  {{20, 40, 20, 120}, dim},
      {{180, 40, 40, 120}, dim},   {{38, 38, 144, 2}, red},    {{38, 160, 144, 2}, red},
      {{38, 40, 2, 120}, red},     {{180, 40, 2, 120}, red},   {{28, 28, 12, 12}, white},
      {{98, 32, 24, 8}, white},    {{180, 28, 12, 12}, white}, {{180, 88, 8, 24}, white},
      {{180, 160, 12, 12}, white}, {{98, 160, 24, 8}, white},  {{28, 160, 12, 12}, white},
      {{32, 88, 8, 24}, white}};
  EXPECT_EQ(drawn, expected);
}

TEST(CropOverlayGeometry, DimsNothingAroundAWholePicture) {
  const auto drawn = rectangles(CanvasProjection({100, 80}, {0, 0}, 1), {}, 1);
  EXPECT_TRUE(rectsOf(drawn, CropAppearance::excludedArea()).empty());
  EXPECT_EQ(rectsOf(drawn, CropAppearance::cropBorder()).size(), 4U);
  EXPECT_EQ(rectsOf(drawn, CropAppearance::cropHandles()).size(), 8U);
}

TEST(CropOverlayGeometry, RoundsBorderAndHandlesToWholeDevicePixels) {
  const CanvasProjection projection({100, 80}, {0, 0}, 1);
  struct Expected {
    double ratio, border, corner, length, depth;
  };
  for (const auto& [ratio, border, corner, length, depth] :
       {Expected{0.2, 1, 2, 5, 2}, Expected{1, 2, 12, 24, 8}, Expected{1.25, 3, 15, 30, 10},
        Expected{1.5, 3, 18, 36, 12}, Expected{2, 4, 24, 48, 16}}) {
    const auto drawn = rectangles(projection, {10, 10, 10, 10}, ratio);
    const auto borders = rectsOf(drawn, CropAppearance::cropBorder());
    const auto handles = rectsOf(drawn, CropAppearance::cropHandles());
    EXPECT_EQ(borders.at(0).height(), border) << ratio;
    EXPECT_EQ(borders.at(2).width(), border) << ratio;
    EXPECT_EQ(handles.at(0).size(), QSizeF(corner, corner)) << ratio;
    EXPECT_EQ(handles.at(1).size(), QSizeF(length, depth)) << ratio;
    EXPECT_EQ(handles.at(3).size(), QSizeF(depth, length)) << ratio;
  }
}

TEST(CropOverlayGeometry, DimsTheWholePictureOutsideOfWhichTheSelectionLies) {
  const CanvasProjection projection({100, 80}, {0, 0}, 1);
  const auto dimmed = [&](const CropMargins& crop) {
    return rectsOf(rectangles(projection, crop, 1), CropAppearance::excludedArea());
  };
  EXPECT_EQ(dimmed({120, 0, -40, 0}), std::vector{QRectF(0, 0, 100, 80)});
  expectSurround(dimmed({60, -10, -40, 30}), {0, 0, 100, 80}, {60, -10, 80, 60});
  expectSurround(dimmed({-30, 50, 60, -20}), {0, 0, 100, 80}, {-30, 50, 70, 50});
}

TEST(CropOverlayGeometry, DrawsNothingWithoutASourceOrARatio) {
  EXPECT_TRUE(rectangles(CanvasProjection(), {}, 1).empty());
  EXPECT_TRUE(rectangles(CanvasProjection({10, 0}, {}, 1), {}, 1).empty());
  for (const double ratio : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity()}) {
    EXPECT_TRUE(rectangles(CanvasProjection({10, 10}, {}, 1), {}, ratio).empty());
  }
}

TEST(CropOverlayGeometry, LeavesTheInsideOfEverySelectionAlone) {
  std::mt19937_64 random(4);
  const auto number = [&](int64_t lowest, int64_t highest) {
    return std::uniform_int_distribution<int64_t>(lowest, highest)(random);
  };
  for (int round = 0; round < 4000; ++round) {
    const double ratio = std::array{1.0, 1.25, 1.5, 2.0}.at(static_cast<size_t>(round % 4));
    const QSizeF source(static_cast<double>(number(1, 9000)), static_cast<double>(number(1, 60)));
    const auto width = static_cast<int64_t>(source.width());
    const auto height = static_cast<int64_t>(source.height());
    CropMargins crop;
    crop.left = number(0, width - 1);
    crop.right = number(0, width - 1 - crop.left);
    crop.top = number(0, height - 1);
    crop.bottom = number(0, height - 1 - crop.top);
    const double zoom = static_cast<double>(number(100, 10000)) / 1000;
    const QPointF origin(static_cast<double>(number(-90000, 900)) / ratio,
                         static_cast<double>(number(-600, 600)) / ratio);
    const CanvasProjection projection(source, origin, zoom / ratio);

    const QRectF selection = snappedToDevice(projection.toView(crop.rectangle(source)), ratio);
    const QRectF frame = snappedToDevice(projection.imageFrame(), ratio);
    const auto drawn = rectangles(projection, crop, ratio);
    ASSERT_GE(selection.width(), 1);
    ASSERT_GE(selection.height(), 1);
    for (const auto& [rect, color] : drawn) {
      ASSERT_EQ(areaOf(rect.intersected(selection)), 0) << round;
      for (const double edge : {rect.left(), rect.top(), rect.right(), rect.bottom()}) {
        ASSERT_EQ(edge, std::round(edge)) << round;
      }
    }
    const double border = std::round(2 * ratio);
    expectSurround(rectsOf(drawn, CropAppearance::excludedArea()), frame, selection);
    expectSurround(rectsOf(drawn, CropAppearance::cropBorder()),
                   selection.adjusted(-border, -border, border, border), selection);
    ASSERT_EQ(rectsOf(drawn, CropAppearance::cropHandles()).size(), 8U);
    ASSERT_FALSE(HasFailure()) << round;
  }
}

}  // namespace
}  // namespace vantrel
