#pragma once

#include <QColor>
#include <QMarginsF>
#include <QPointer>
#include <QSizeF>
#include <cstdint>

#include "model/crop_margins.h"
#include "platform/image/bitmap.h"
#include "platform/movie/video_picture_source.h"

namespace vantrel {

/// All that an editor tells its canvas; made anew with each update.
struct CropCanvas {
  /// Where the pictures of a video come from; null for an image and for nothing.
  QPointer<VideoPictureSource> player;
  /// Empty for a video and for nothing.
  Bitmap image;
  /// In source pixels; 0 × 0 for nothing.
  QSizeF sourceSize{0, 0};
  CropMargins crop;
  /// Device pixels for each source pixel.
  double zoom = 1;
  bool fit = true;
  /// Shows only what the crop keeps.
  bool previewOnly = false;
  /// Each change asks for a smooth move to the zoom or the fit, and to the centre if the next one
  /// says so.
  int64_t cameraRequest = 0;
  bool centerCameraOnRequest = true;
  /// What a framed picture keeps clear of, in points from the edges of the viewport.
  QMarginsF framingInsets;
  QColor canvasColor;
};

}  // namespace vantrel
