#pragma once

#include <QRectF>
#include <QSize>

namespace vantrel {

/// Where and how a picture is drawn, in device pixels of the framebuffer, y downwards from its top
/// left corner.
struct PictureView {
  /// Size of the framebuffer.
  QSize target;
  /// Where the whole picture lies, visible or not. Its origin is on a whole pixel. Its edges are
  /// drawn rounded, at least one pixel apart.
  QRectF frame;
  /// The part of the picture that the crop keeps; its edges are on whole pixels.
  QRectF retained;
  /// Opacity of the picture outside `retained`, from 0 to 1.
  double excludedOpacity = 1;

  friend bool operator==(const PictureView&, const PictureView&) = default;
};

}  // namespace vantrel
