#pragma once

#include <QPointF>
#include <QRectF>
#include <cstdint>
#include <optional>
#include <vector>

#include "canvas/canvas_projection.h"
#include "canvas/crop_overlay_geometry.h"
#include "model/crop_margins.h"

namespace vantrel {

/// What the pointer over the canvas looks like.
enum class CropCursor {
  arrow,
  move,
  vertical,
  horizontal,
  topLeft,
  top,
  topRight,
  right,
  bottomRight,
  bottom,
  bottomLeft,
  left
};

/// The rules of the crop on the canvas: what lies under a point, what a drag or an arrow key makes
/// of the crop. Points are those of the viewport, movements are counted in source pixels. A plain
/// value.
class CropOverlay final {
 public:
  enum class Direction { left, right, up, down };

  /// What a press takes hold of.
  struct Grip {
    /// Absent when the whole crop is moved.
    std::optional<CropHandle> handle;
    friend bool operator==(const Grip&, const Grip&) = default;
  };

  [[nodiscard]] const CropMargins& crop() const { return m_crop; }
  [[nodiscard]] const CanvasProjection& projection() const { return m_projection; }
  [[nodiscard]] const QSizeF& sourceSize() const { return m_projection.sourceSize(); }
  [[nodiscard]] bool isEditingEnabled() const { return m_isEditingEnabled; }
  /// The crop in points.
  [[nodiscard]] QRectF selection() const;
  /// Absent outside of all zones.
  [[nodiscard]] std::optional<Grip> gripAt(const QPointF& point) const;
  [[nodiscard]] CropCursor cursorAt(const QPointF& point) const;
  /// What is being dragged.
  [[nodiscard]] const std::optional<Grip>& grip() const { return m_grip; }

  /// A drag goes on with the same spot of the source under the pointer.
  void setProjection(const CanvasProjection& projection);
  void setCrop(const CropMargins& crop) { m_crop = crop; }
  /// Off in preview: no cursor of its own, no press.
  void setEditingEnabled(bool enabled) { m_isEditingEnabled = enabled; }
  /// The pixel step that resizing keeps to.
  void setPixelStep(int64_t step) { m_pixelStep = step; }

  /// True when a drag begins that can change the crop.
  bool press(const QPointF& point);
  /// The crop that the drag from the press to this point makes, which it also takes; absent when
  /// nothing is dragged. `keepsRatio` counts for corners alone.
  std::optional<CropMargins> drag(const QPointF& point, bool keepsRatio);
  void release();
  /// Moves the crop by whole source pixels: one, or ten when `isLarge`.
  CropMargins nudge(Direction direction, bool isLarge);
  /// Moves the edges of one handle by whole source pixels, as far as legal: one, or ten when
  /// `isLarge`; at least the pixel step. Directions that the handle does not have do nothing.
  CropMargins nudge(CropHandle handle, Direction direction, bool isLarge);

 private:
  [[nodiscard]] CropMargins resized(CropHandle handle, const QPointF& movement,
                                    bool keepsRatio) const;

  CanvasProjection m_projection;
  CropMargins m_crop;
  bool m_isEditingEnabled = true;
  int64_t m_pixelStep = 2;
  QPointF m_dragOrigin;
  CropMargins m_dragCrop;
  std::optional<Grip> m_grip;
};

}  // namespace vantrel
