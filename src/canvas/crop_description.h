#pragma once

#include <QSizeF>
#include <QString>

#include "canvas/crop_overlay.h"

/// A crop in words, for who cannot see it. Numbers are source pixels.
namespace vantrel::CropDescription {

/// Such as "1920 × 1080 pixels at 0, 0", the position being that of the top left corner.
[[nodiscard]] QString ofCrop(const CropMargins& crop, const QSizeF& source);
/// Such as "Top left handle".
[[nodiscard]] QString nameOf(CropHandle handle);
/// The margins that the handle moves, such as "Top 12, left 30 pixels".
[[nodiscard]] QString ofHandle(CropHandle handle, const CropMargins& crop);
/// Such as "Move left".
[[nodiscard]] QString ofMove(CropOverlay::Direction direction);

}  // namespace vantrel::CropDescription
