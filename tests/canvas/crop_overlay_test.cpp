#include "canvas/crop_overlay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>

namespace vantrel {
namespace {

using Direction = CropOverlay::Direction;
using Grip = CropOverlay::Grip;
using Edge = CropMargins::Edge;

constexpr std::array kDirections{Direction::left, Direction::right, Direction::up, Direction::down};
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

/// A source of 400 × 300 at 50, 40; the crop lies at 100, 90 in points and is 200 × 100 large.
CropOverlay overlayAt(double scale = 1, int64_t pixelStep = 1) {
  CropOverlay overlay;
  overlay.setProjection(CanvasProjection({400, 300}, {50, 40}, scale));
  overlay.setCrop({50, 50, 150, 150});
  overlay.setPixelStep(pixelStep);
  return overlay;
}

/// A crop of 4 × 4 points at 100, 90, so that its zones lie over one another.
CropOverlay tinyOverlay() {
  CropOverlay overlay = overlayAt();
  overlay.setCrop({50, 50, 346, 246});
  return overlay;
}

/// What a press at one point and a drag to another make.
std::optional<CropMargins> dragged(CropOverlay overlay, const QPointF& from, const QPointF& to,
                                   bool keepsRatio = false) {
  overlay.press(from);
  return overlay.drag(to, keepsRatio);
}

std::optional<Grip> gripOf(CropHandle handle) {
  return Grip{handle};
}

TEST(CropOverlay, MapsTheCropToPoints) {
  EXPECT_EQ(overlayAt().selection(), QRectF(100, 90, 200, 100));
  EXPECT_EQ(overlayAt(0.5).selection(), QRectF(75, 65, 100, 50));
}

TEST(CropOverlay, HoldsEachHandleFourPointsAround) {
  const CropOverlay overlay = overlayAt();
  for (const CropHandle handle : kCropHandles) {
    const QRectF zone =
        CropOverlayGeometry::handleRect(handle, overlay.selection()).adjusted(-4, -4, 4, 4);
    const double inside = 1e-9;
    for (const QPointF& point : {zone.topLeft(), QPointF(zone.right() - inside, zone.top()),
                                 zone.center(), QPointF(zone.left(), zone.bottom() - inside)}) {
      EXPECT_EQ(overlay.gripAt(point), gripOf(handle));
    }
    EXPECT_NE(overlay.gripAt({zone.left() - inside, zone.top()}), gripOf(handle));
    EXPECT_NE(overlay.gripAt({zone.left(), zone.top() - inside}), gripOf(handle));
  }
}

TEST(CropOverlay, LeavesOutTheRightAndBottomEdgesOfAZone) {
  const CropOverlay overlay = overlayAt();
  // The left and top edges of a zone belong to it, the right and bottom ones do not.
  EXPECT_EQ(overlay.gripAt({84, 74}), gripOf(CropHandle::topLeft));
  EXPECT_EQ(overlay.gripAt({104, 74}), std::nullopt);
  EXPECT_EQ(overlay.gripAt({84, 94}), std::nullopt);
  EXPECT_EQ(overlay.gripAt({316, 200}), std::nullopt);
  EXPECT_EQ(overlay.cursorAt({85, 75}), CropCursor::topLeft);
  EXPECT_EQ(overlay.cursorAt({315, 200}), CropCursor::arrow);
  EXPECT_EQ(overlay.cursorAt({150, 93}), CropCursor::move);
  EXPECT_EQ(overlay.gripAt({150, 93}), Grip{});
  EXPECT_EQ(overlay.gripAt({150, 196}), std::nullopt);
}

TEST(CropOverlay, HoldsAnEdgeBySixPointsOutsideAndThreeInside) {
  const CropOverlay overlay = overlayAt();
  EXPECT_EQ(overlay.gripAt({150, 83.9}), std::nullopt);
  EXPECT_EQ(overlay.gripAt({150, 84}), gripOf(CropHandle::top));
  EXPECT_EQ(overlay.gripAt({150, 92.9}), gripOf(CropHandle::top));
  EXPECT_EQ(overlay.gripAt({150, 93}), Grip{});
  EXPECT_EQ(overlay.gripAt({150, 186.9}), Grip{});
  EXPECT_EQ(overlay.gripAt({150, 187}), gripOf(CropHandle::bottom));
  EXPECT_EQ(overlay.gripAt({150, 195.9}), gripOf(CropHandle::bottom));
  EXPECT_EQ(overlay.gripAt({93.9, 115}), std::nullopt);
  EXPECT_EQ(overlay.gripAt({94, 115}), gripOf(CropHandle::left));
  EXPECT_EQ(overlay.gripAt({102.9, 115}), gripOf(CropHandle::left));
  EXPECT_EQ(overlay.gripAt({297, 115}), gripOf(CropHandle::right));
  EXPECT_EQ(overlay.gripAt({305.9, 115}), gripOf(CropHandle::right));
  EXPECT_EQ(overlay.gripAt({306, 115}), std::nullopt);
}

TEST(CropOverlay, HoldsTheWholeCropInside) {
  CropOverlay overlay = overlayAt();
  EXPECT_TRUE(overlay.press({200, 140}));
  EXPECT_EQ(overlay.grip(), Grip{});
  EXPECT_FALSE(overlay.grip()->handle.has_value());
}

TEST(CropOverlay, HoldsNothingOutsideOfAllZones) {
  CropOverlay overlay = overlayAt();
  EXPECT_FALSE(overlay.press({20, 20}));
  EXPECT_EQ(overlay.grip(), std::nullopt);
  EXPECT_EQ(overlay.drag({40, 40}, false), std::nullopt);
  EXPECT_EQ(overlay.cursorAt({20, 20}), CropCursor::arrow);
}

TEST(CropOverlay, ForgetsWhatItHeldWhenAPressMisses) {
  CropOverlay overlay = overlayAt();
  overlay.press({200, 140});
  EXPECT_FALSE(overlay.press({20, 20}));
  EXPECT_EQ(overlay.drag({220, 140}, false), std::nullopt);
}

TEST(CropOverlay, ResizesFromWhereNoResizeCursorShows) {
  CropOverlay overlay = overlayAt();
  // 3.5 points to the left of the top left handle.
  EXPECT_EQ(overlay.cursorAt({84.5, 84}), CropCursor::arrow);
  EXPECT_TRUE(overlay.press({84.5, 84}));
  EXPECT_EQ(overlay.grip(), gripOf(CropHandle::topLeft));
  // And as far inside the selection.
  EXPECT_EQ(overlay.cursorAt({103.5, 93.5}), CropCursor::move);
  EXPECT_EQ(overlay.gripAt({103.5, 93.5}), gripOf(CropHandle::topLeft));
}

TEST(CropOverlay, ShowsTheCursorOfEachZone) {
  const CropOverlay overlay = overlayAt();
  const std::map<CropHandle, CropCursor> cursors{
      {CropHandle::topLeft, CropCursor::topLeft},         {CropHandle::top, CropCursor::top},
      {CropHandle::topRight, CropCursor::topRight},       {CropHandle::right, CropCursor::right},
      {CropHandle::bottomRight, CropCursor::bottomRight}, {CropHandle::bottom, CropCursor::bottom},
      {CropHandle::bottomLeft, CropCursor::bottomLeft},   {CropHandle::left, CropCursor::left}};
  for (const CropHandle handle : kCropHandles) {
    const QRectF rect = CropOverlayGeometry::handleRect(handle, overlay.selection());
    EXPECT_EQ(overlay.cursorAt(rect.center()), cursors.at(handle));
    EXPECT_EQ(overlay.cursorAt(rect.topLeft() - QPointF(3, 3)), cursors.at(handle));
  }
  EXPECT_EQ(overlay.cursorAt({150, 88}), CropCursor::vertical);
  EXPECT_EQ(overlay.cursorAt({150, 192}), CropCursor::vertical);
  EXPECT_EQ(overlay.cursorAt({98, 115}), CropCursor::horizontal);
  EXPECT_EQ(overlay.cursorAt({302, 115}), CropCursor::horizontal);
  EXPECT_EQ(overlay.cursorAt({200, 140}), CropCursor::move);
}

TEST(CropOverlay, PrefersTheFirstOfHandlesThatOverlap) {
  const CropOverlay overlay = tinyOverlay();
  // In the zones of the handles at the top left, the top, the top right and the left.
  EXPECT_EQ(overlay.gripAt({98, 85}), gripOf(CropHandle::topLeft));
  EXPECT_EQ(overlay.cursorAt({98, 85}), CropCursor::topLeft);
  EXPECT_EQ(overlay.gripAt({105, 85}), gripOf(CropHandle::top));
  EXPECT_EQ(overlay.cursorAt({105, 85}), CropCursor::top);
}

TEST(CropOverlay, PrefersHandlesToBandsAndBandsToTheInside) {
  CropOverlay overlay = overlayAt();
  // 24 points wide, so that the handle at the top covers the band there.
  overlay.setCrop({50, 50, 326, 150});
  EXPECT_EQ(overlay.gripAt({112, 88}), gripOf(CropHandle::top));
  EXPECT_EQ(overlay.cursorAt({112, 88}), CropCursor::top);
  EXPECT_EQ(overlay.cursorAt({112, 92.5}), CropCursor::top);
  EXPECT_EQ(overlay.gripAt({101, 106}), gripOf(CropHandle::left));
  EXPECT_EQ(overlay.cursorAt({101, 106}), CropCursor::horizontal);
  EXPECT_EQ(overlay.cursorAt({112, 106}), CropCursor::move);
}

TEST(CropOverlay, PrefersTheTopBandToTheBottomAndTheLeftToTheRight) {
  CropOverlay flat = overlayAt();
  flat.setCrop({50, 50, 150, 249});  // 200 × 1 points
  // Beside the handles: within the bands of both edges.
  EXPECT_EQ(flat.gripAt({150, 90.5}), gripOf(CropHandle::top));
  EXPECT_EQ(flat.cursorAt({150, 90.5}), CropCursor::vertical);
  EXPECT_EQ(flat.gripAt({150, 94}), gripOf(CropHandle::bottom));
  CropOverlay narrow = overlayAt();
  narrow.setCrop({50, 50, 349, 150});  // 1 × 100 points
  EXPECT_EQ(narrow.gripAt({100.5, 115}), gripOf(CropHandle::left));
  EXPECT_EQ(narrow.cursorAt({100.5, 115}), CropCursor::horizontal);
  EXPECT_EQ(narrow.gripAt({105, 115}), gripOf(CropHandle::right));
}

TEST(CropOverlay, ShowsACursorOfWhatAPressHoldsWhereZonesOverlap) {
  const std::map<CropHandle, CropCursor> ofBands{{CropHandle::top, CropCursor::vertical},
                                                 {CropHandle::bottom, CropCursor::vertical},
                                                 {CropHandle::left, CropCursor::horizontal},
                                                 {CropHandle::right, CropCursor::horizontal}};
  for (const int64_t length : {0, 1, 4, 9, 30, 60}) {
    CropOverlay overlay = overlayAt();
    overlay.setCrop({50, 50, 350 - length, 250 - length});
    const auto inSlop = [&](const QPointF& point) {
      for (const CropHandle handle : kCropHandles) {
        const QRectF rect = CropOverlayGeometry::handleRect(handle, overlay.selection());
        const bool inner = rect.adjusted(-3, -3, 3, 3).contains(point);
        if (!inner && rect.adjusted(-4, -4, 4, 4).contains(point)) return true;
      }
      return false;
    };
    for (double y = 70.25; y < 190; y += 0.5) {
      for (double x = 80.25; x < 200; x += 0.5) {
        if (inSlop({x, y})) continue;
        const CropCursor cursor = overlay.cursorAt({x, y});
        const auto grip = overlay.gripAt({x, y});
        if (!grip) {
          ASSERT_EQ(cursor, CropCursor::arrow) << x << ' ' << y;
        } else if (!grip->handle) {
          ASSERT_EQ(cursor, CropCursor::move) << x << ' ' << y;
        } else if (cursor == CropCursor::vertical || cursor == CropCursor::horizontal) {
          ASSERT_EQ(cursor, ofBands.at(*grip->handle)) << x << ' ' << y;
        } else {
          const auto first = static_cast<int>(CropCursor::topLeft);
          ASSERT_EQ(static_cast<int>(cursor) - first, static_cast<int>(*grip->handle));
        }
      }
    }
  }
}

TEST(CropOverlay, DoesNothingWithoutASource) {
  for (const QSizeF size : {QSizeF(0, 0), QSizeF(0, 5), QSizeF(5, 0)}) {
    CropOverlay overlay;
    overlay.setProjection(CanvasProjection(size, {0, 0}, 1));
    for (const QPointF point : {QPointF(0, 0), QPointF(-5, -5), QPointF(2, 2)}) {
      EXPECT_FALSE(overlay.press(point));
      EXPECT_EQ(overlay.cursorAt(point), CropCursor::arrow);
      EXPECT_EQ(overlay.drag({9, 9}, false), std::nullopt);
    }
    for (const Direction direction : kDirections) {
      EXPECT_EQ(overlay.nudge(direction, true), CropMargins());
      EXPECT_EQ(overlay.nudge(CropHandle::topLeft, direction, true), CropMargins());
    }
  }
}

TEST(CropOverlay, StopsADragWhenTheSourceGoes) {
  CropOverlay overlay = overlayAt();
  overlay.press({200, 140});
  overlay.setProjection({});
  EXPECT_EQ(overlay.drag({220, 140}, false), std::nullopt);
}

TEST(CropOverlay, TakesNoPressAndShowsNoCursorWhileEditingIsOff) {
  CropOverlay overlay = overlayAt();
  EXPECT_TRUE(overlay.isEditingEnabled());
  overlay.setEditingEnabled(false);
  for (const QPointF point : {QPointF(94, 84), QPointF(150, 90), QPointF(200, 140)}) {
    EXPECT_FALSE(overlay.press(point));
    EXPECT_EQ(overlay.cursorAt(point), CropCursor::arrow);
    EXPECT_EQ(overlay.drag({250, 160}, false), std::nullopt);
  }
  EXPECT_EQ(overlay.crop(), CropMargins(50, 50, 150, 150));
}

TEST(CropOverlay, NudgesAlsoWhileEditingIsOff) {
  CropOverlay overlay = overlayAt();
  overlay.setEditingEnabled(false);
  EXPECT_EQ(overlay.nudge(Direction::right, false), CropMargins(51, 50, 149, 150));
}

TEST(CropOverlay, CountsADragInSourcePixels) {
  const auto crop = dragged(overlayAt(2), {550, 250}, {560, 250});
  EXPECT_EQ(crop, CropMargins(50, 50, 145, 150));
}

TEST(CropOverlay, MovesTheMarginsOfEachHandle) {
  const std::map<CropHandle, CropMargins> expected{
      {CropHandle::topLeft, {57, 45, 150, 150}},     {CropHandle::top, {50, 45, 150, 150}},
      {CropHandle::topRight, {50, 45, 143, 150}},    {CropHandle::right, {50, 50, 143, 150}},
      {CropHandle::bottomRight, {50, 50, 143, 155}}, {CropHandle::bottom, {50, 50, 150, 155}},
      {CropHandle::bottomLeft, {57, 50, 150, 155}},  {CropHandle::left, {57, 50, 150, 150}}};
  for (const CropHandle handle : kCropHandles) {
    const CropOverlay overlay = overlayAt();
    const QPointF press = CropOverlayGeometry::handleRect(handle, overlay.selection()).center();
    EXPECT_EQ(dragged(overlay, press, press + QPointF(7, -5)), expected.at(handle));
  }
}

TEST(CropOverlay, MovesTheWholeCropAndStopsAtTheBorder) {
  EXPECT_EQ(dragged(overlayAt(), {200, 140}, {207, 135}), CropMargins(57, 45, 143, 155));
  EXPECT_EQ(dragged(overlayAt(), {200, 140}, {-900, 140}), CropMargins(0, 50, 200, 150));
  EXPECT_EQ(dragged(overlayAt(), {200, 140}, {200, 900}), CropMargins(50, 200, 150, 0));
}

TEST(CropOverlay, MovesByWholePixelsWhateverThePixelStep) {
  EXPECT_EQ(dragged(overlayAt(1, 2), {200, 140}, {201, 143}), CropMargins(51, 53, 149, 147));
  EXPECT_EQ(dragged(overlayAt(1, 2), {200, 140}, {201, 143}, true), CropMargins(51, 53, 149, 147));
}

TEST(CropOverlay, ResizesByThePixelStep) {
  EXPECT_EQ(dragged(overlayAt(1, 2), {304, 140}, {307, 140}), CropMargins(50, 50, 148, 150));
  EXPECT_EQ(dragged(overlayAt(1, 1), {304, 140}, {307, 140}), CropMargins(50, 50, 147, 150));
}

TEST(CropOverlay, RoundsHalvesAwayFromZero) {
  EXPECT_EQ(dragged(overlayAt(2), {550, 250}, {551, 251}), CropMargins(50, 50, 149, 150));
  EXPECT_EQ(dragged(overlayAt(2), {550, 250}, {549, 249}), CropMargins(50, 50, 151, 150));
  EXPECT_EQ(dragged(overlayAt(2), {300, 200}, {301, 199}), CropMargins(51, 49, 149, 151));
  EXPECT_EQ(dragged(overlayAt(2), {300, 200}, {300.9, 199.1}), CropMargins(50, 50, 150, 150));
}

TEST(CropOverlay, StartsEveryStepFromThePress) {
  CropOverlay overlay = overlayAt();
  overlay.press({304, 140});
  for (int step = 1; step <= 100; ++step)
    overlay.drag({304 + step * 0.4, 140}, false);
  EXPECT_EQ(overlay.crop(), CropMargins(50, 50, 110, 150));
  overlay.drag({5000, 140}, false);
  EXPECT_EQ(overlay.drag({305, 140}, false), CropMargins(50, 50, 149, 150));
  EXPECT_EQ(overlay.crop(), CropMargins(50, 50, 149, 150));
}

TEST(CropOverlay, KeepsTheSpotUnderThePointerWhenTheProjectionChanges) {
  CropOverlay overlay = overlayAt();
  overlay.press({304, 140});
  overlay.setProjection(CanvasProjection({400, 300}, {-50, 20}, 1));
  EXPECT_EQ(overlay.drag({304, 140}, false), CropMargins(50, 50, 50, 150));
  overlay.setProjection(CanvasProjection({400, 300}, {50, 40}, 2));
  EXPECT_EQ(overlay.drag({50 + 2 * 254, 140}, false), CropMargins(50, 50, 150, 150));
  EXPECT_EQ(overlay.drag({50 + 2 * 264, 140}, false), CropMargins(50, 50, 140, 150));
}

TEST(CropOverlay, DropsWhatANudgeMadeSinceThePress) {
  CropOverlay overlay = overlayAt();
  overlay.press({304, 140});
  EXPECT_EQ(overlay.nudge(Direction::down, true), CropMargins(50, 60, 150, 140));
  EXPECT_EQ(overlay.drag({309, 140}, false), CropMargins(50, 50, 145, 150));
}

TEST(CropOverlay, AnswersEveryStepAlsoWhenNothingChanges) {
  CropOverlay overlay = overlayAt();
  overlay.press({200, 140});
  EXPECT_EQ(overlay.drag({200.2, 140}, false), overlay.crop());
}

TEST(CropOverlay, KeepsTheRatioOfACornerAlone) {
  const CropMargins start(50, 50, 150, 150);
  const QSizeF source(400, 300);
  const QPointF corner(94, 84);
  EXPECT_EQ(dragged(overlayAt(), corner, corner + QPointF(13, -2), true),
            start.resizedKeepingRatio(13, -2, {Edge::top, Edge::left}, source, 1));
  EXPECT_NE(dragged(overlayAt(), corner, corner + QPointF(13, -2), true),
            dragged(overlayAt(), corner, corner + QPointF(13, -2), false));
  const QPointF top(200, 86);
  EXPECT_EQ(dragged(overlayAt(), top, top + QPointF(13, -9), true), CropMargins(50, 41, 150, 150));
  const QPointF band(150, 86);
  EXPECT_EQ(dragged(overlayAt(), band, band + QPointF(13, -9), true),
            CropMargins(50, 41, 150, 150));
}

TEST(CropOverlay, LeavesTheRoundingToTheRatio) {
  const CropMargins start(50, 50, 150, 150);
  const QPointF corner(556, 346);
  const CropOverlay overlay = overlayAt(2);
  ASSERT_EQ(overlay.gripAt(corner), gripOf(CropHandle::bottomRight));
  for (double x = -3; x < 3; x += 0.25) {
    EXPECT_EQ(
        dragged(overlay, corner, corner + QPointF(x, 0.7), true),
        start.resizedKeepingRatio(x / 2, QPointF(0, corner.y() + 0.7).y() / 2 - corner.y() / 2,
                                  {Edge::bottom, Edge::right}, {400, 300}, 1));
  }
}

TEST(CropOverlay, ChangesRatioKeepingWithinOneDrag) {
  CropOverlay overlay = overlayAt();
  overlay.press({94, 84});
  const auto free = overlay.drag({104, 84}, false);
  const auto kept = overlay.drag({104, 84}, true);
  EXPECT_NE(free, kept);
  EXPECT_EQ(overlay.drag({104, 84}, false), free);
}

TEST(CropOverlay, SurvivesPointersBeyondAllNumbers) {
  for (const double far : {1e300, -1e300, 1e19, -1e19, 1e18, -1e18}) {
    for (const bool keepsRatio : {false, true}) {
      const auto resized = dragged(overlayAt(0.001), {50.4, 40.4}, {far, far}, keepsRatio);
      const auto moved = dragged(overlayAt(), {200, 140}, {far, -far}, keepsRatio);
      ASSERT_TRUE(resized && moved);
      for (const Edge edge : CropMargins::kEdges) {
        EXPECT_GE((*resized)[edge], 0);
        EXPECT_GE((*moved)[edge], 0);
      }
      EXPECT_FALSE(resized->rectangle({400, 300}).isEmpty());
      EXPECT_EQ(moved->rectangle({400, 300}).size(), QSizeF(200, 100));
    }
  }
  for (const QPointF point :
       {QPointF(kNone, 3), QPointF(3, kInfinite), QPointF(-kInfinite, kNone)}) {
    CropOverlay overlay = overlayAt();
    EXPECT_FALSE(overlay.press(point));
    EXPECT_EQ(overlay.cursorAt(point), CropCursor::arrow);
    overlay.press({200, 140});
    EXPECT_EQ(overlay.drag(point, true), std::nullopt);
    EXPECT_EQ(overlay.crop(), CropMargins(50, 50, 150, 150));
    EXPECT_EQ(overlay.drag({201, 140}, true), CropMargins(51, 50, 149, 150));
  }
}

TEST(CropOverlay, LetsGoOnRelease) {
  CropOverlay overlay = overlayAt();
  overlay.press({200, 140});
  overlay.release();
  EXPECT_EQ(overlay.grip(), std::nullopt);
  EXPECT_EQ(overlay.drag({220, 140}, false), std::nullopt);
  overlay.release();
  EXPECT_EQ(overlay.crop(), CropMargins(50, 50, 150, 150));
}

TEST(CropOverlay, NudgesByOneOrTenWhateverThePixelStep) {
  for (const int64_t pixelStep : {1, 2}) {
    const CropOverlay overlay = overlayAt(1, pixelStep);
    const auto nudged = [&](Direction direction, bool isLarge) {
      return CropOverlay(overlay).nudge(direction, isLarge);
    };
    EXPECT_EQ(nudged(Direction::left, false), CropMargins(49, 50, 151, 150));
    EXPECT_EQ(nudged(Direction::right, false), CropMargins(51, 50, 149, 150));
    EXPECT_EQ(nudged(Direction::up, false), CropMargins(50, 49, 150, 151));
    EXPECT_EQ(nudged(Direction::down, false), CropMargins(50, 51, 150, 149));
    EXPECT_EQ(nudged(Direction::left, true), CropMargins(40, 50, 160, 150));
    EXPECT_EQ(nudged(Direction::right, true), CropMargins(60, 50, 140, 150));
    EXPECT_EQ(nudged(Direction::up, true), CropMargins(50, 40, 150, 160));
    EXPECT_EQ(nudged(Direction::down, true), CropMargins(50, 60, 150, 140));
  }
}

TEST(CropOverlay, KeepsWhatANudgeMakes) {
  CropOverlay overlay = overlayAt();
  for (int i = 0; i < 8; ++i)
    overlay.nudge(Direction::up, true);
  EXPECT_EQ(overlay.crop(), CropMargins(50, 0, 150, 200));
  EXPECT_EQ(overlay.grip(), std::nullopt);
}

TEST(CropOverlay, NudgesTheEdgesOfAHandle) {
  CropOverlay overlay = overlayAt();
  EXPECT_EQ(overlay.nudge(CropHandle::topLeft, Direction::right, false),
            CropMargins(51, 50, 150, 150));
  EXPECT_EQ(overlay.nudge(CropHandle::topLeft, Direction::up, true), CropMargins(51, 40, 150, 150));
  EXPECT_EQ(overlay.nudge(CropHandle::right, Direction::right, false),
            CropMargins(51, 40, 149, 150));
  EXPECT_EQ(overlay.nudge(CropHandle::bottomRight, Direction::down, true),
            CropMargins(51, 40, 149, 140));
  EXPECT_EQ(overlay.nudge(CropHandle::bottomRight, Direction::left, false),
            CropMargins(51, 40, 150, 140));
}

TEST(CropOverlay, IgnoresDirectionsThatAHandleDoesNotHave) {
  CropOverlay overlay = overlayAt();
  for (const CropHandle handle : {CropHandle::top, CropHandle::bottom}) {
    overlay.nudge(handle, Direction::left, true);
    overlay.nudge(handle, Direction::right, false);
  }
  for (const CropHandle handle : {CropHandle::left, CropHandle::right}) {
    overlay.nudge(handle, Direction::up, true);
    overlay.nudge(handle, Direction::down, false);
  }
  EXPECT_EQ(overlay.crop(), CropMargins(50, 50, 150, 150));
}

TEST(CropOverlay, NudgesAHandleByWholePixelSteps) {
  const CropOverlay overlay = overlayAt(1, 2);
  const auto nudged = [&](Direction direction, bool isLarge) {
    return CropOverlay(overlay).nudge(CropHandle::left, direction, isLarge).left;
  };
  EXPECT_EQ(nudged(Direction::left, false), 48);
  EXPECT_EQ(nudged(Direction::right, false), 52);
  EXPECT_EQ(nudged(Direction::left, true), 40);
  EXPECT_EQ(nudged(Direction::right, true), 60);
}

TEST(CropOverlay, NudgesAHandleToEveryLimitWithoutSticking) {
  for (const int64_t pixelStep : {1, 2}) {
    for (const bool isLarge : {false, true}) {
      for (const CropHandle handle : kCropHandles) {
        for (const Direction direction : kDirections) {
          // Odd in both directions, so that not every margin can become 0 at a step of 2.
          CropOverlay overlay;
          overlay.setProjection(CanvasProjection({47, 35}, {0, 0}, 1));
          overlay.setPixelStep(pixelStep);
          overlay.setCrop({13, 10, 14, 13});
          CropMargins before = overlay.crop();
          while (overlay.nudge(handle, direction, isLarge) != before) {
            const QRectF kept = overlay.crop().rectangle({47, 35});
            ASSERT_EQ(std::fmod(kept.width(), pixelStep), 0);
            ASSERT_EQ(std::fmod(kept.height(), pixelStep), 0);
            before = overlay.crop();
          }
          // Nothing legal lies beyond.
          for (const Edge edge : CropOverlayGeometry::edgesOf(handle)) {
            const bool sideways = edge == Edge::left || edge == Edge::right;
            const bool applies =
                sideways == (direction == Direction::left || direction == Direction::right);
            if (!applies) continue;
            const bool outward = (edge == Edge::left && direction == Direction::left) ||
                                 (edge == Edge::right && direction == Direction::right) ||
                                 (edge == Edge::top && direction == Direction::up) ||
                                 (edge == Edge::bottom && direction == Direction::down);
            const QRectF kept = overlay.crop().rectangle({47, 35});
            if (outward) {
              EXPECT_LT(overlay.crop()[edge], pixelStep);
            } else {
              EXPECT_EQ(sideways ? kept.width() : kept.height(), pixelStep);
            }
          }
        }
      }
    }
  }
}

TEST(CropOverlay, NudgesAHandleOfACropOffThePixelStep) {
  CropOverlay overlay = overlayAt(1, 2);
  overlay.setCrop({49, 50, 150, 150});  // 201 wide
  EXPECT_EQ(CropOverlay(overlay).nudge(CropHandle::left, Direction::left, false).left, 48);
  EXPECT_GT(CropOverlay(overlay).nudge(CropHandle::left, Direction::right, false).left, 49);
}

}  // namespace
}  // namespace vantrel
