#pragma once

#include <QCursor>
#include <QImage>

#include "canvas/crop_overlay.h"

/// The cursors of the canvas; one of them is drawn by the program itself.
namespace vantrel::CropCursors {

/// A four-way arrow, black with a white halo, 28 × 28 points large.
[[nodiscard]] QImage moveImage(double devicePixelRatio);
/// With its hot spot in the middle; made once for each ratio.
[[nodiscard]] const QCursor& move(double devicePixelRatio);

[[nodiscard]] QCursor cursor(CropCursor kind, double devicePixelRatio);

}  // namespace vantrel::CropCursors
