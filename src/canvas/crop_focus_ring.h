#pragma once

#include <QColor>
#include <QRectF>
#include <optional>
#include <vector>

#include "canvas/crop_overlay_geometry.h"
#include "platform/gl/rectangle_painter.h"

namespace vantrel {

/// The edge, inside the ring, makes it seen on whatever picture: it differs from it by 3:1 or more.
struct FocusColors {
  QColor ring, edge;
};

/// Shows what the keyboard moves: a ring around `handle`, or around the crop with all its handles
/// if it is absent; the handles are white. `selection` is the crop in points; the result, in the
/// order of drawing, is in device pixels.
[[nodiscard]] std::vector<ColoredRectangle> cropFocusRing(const std::optional<CropHandle>& handle,
                                                          const QRectF& selection,
                                                          const FocusColors& colors,
                                                          double devicePixelRatio);

}  // namespace vantrel
