#pragma once

#include <QColor>
#include <QRectF>
#include <optional>
#include <vector>

#include "canvas/crop_overlay_geometry.h"
#include "platform/gl/rectangle_painter.h"

namespace vantrel {

/// Shows what the keyboard moves: a ring around `handle`, or around the crop with all its handles
/// if it is absent. `selection` is the crop in points; the result, in the order of drawing, is in
/// device pixels.
[[nodiscard]] std::vector<ColoredRectangle> cropFocusRing(const std::optional<CropHandle>& handle,
                                                          const QRectF& selection,
                                                          const QColor& color,
                                                          double devicePixelRatio);

}  // namespace vantrel
