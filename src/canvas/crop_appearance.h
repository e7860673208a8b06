#pragma once

#include <QColor>
#include <QPalette>

/// The colours of the canvas and the crop, the same in every style of the desktop.
namespace vantrel::CropAppearance {

/// Of the crop's border and its export alone: sRGB 225, 0, 0.
[[nodiscard]] QColor exportAccent();
/// Behind the picture: white 0.2 in a dark palette, 0.78 in a light one.
[[nodiscard]] QColor canvas(const QPalette& palette);
[[nodiscard]] QColor cropBorder();
[[nodiscard]] QColor cropHandles();
/// Over what the crop cuts away: black at 0.45.
[[nodiscard]] QColor excludedArea();

}  // namespace vantrel::CropAppearance
