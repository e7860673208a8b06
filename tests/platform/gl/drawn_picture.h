#pragma once

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <QSignalSpy>

#include "platform/gl/offscreen_canvas.h"
#include "platform/gl/picture_renderer.h"
#include "platform/image/display_renderer.h"

namespace vantrel::testing {

/// A view without a crop: the whole picture, its top left corner at `origin`, a source pixel
/// `scale` device pixels wide and high.
inline PictureView viewOf(const Bitmap& image, const QSize& target, const QPointF& origin,
                          double scale) {
  const QSizeF size(static_cast<double>(image.width()) * scale,
                    static_cast<double>(image.height()) * scale);
  return {target, {origin, size}, {origin, size}, 1};
}

/// Draws until the renderer has nothing to add; what `canvas` shows then.
inline QImage drawComplete(OffscreenCanvas& canvas, PictureRenderer& renderer,
                           const PictureView& view, const QColor& background = Qt::black) {
  QSignalSpy improved(&renderer, &PictureRenderer::pictureImproved);
  for (;;) {
    canvas.clear(background);
    renderer.draw(view);
    if (renderer.isComplete()) return canvas.image();
    if (improved.isEmpty() && !improved.wait(60'000)) {
      ADD_FAILURE() << "the picture does not become complete";
      return canvas.image();
    }
    improved.clear();
  }
}

/// All of a picture as the display shows it.
inline QImage displayPixels(const Bitmap& image, int reduction = 1) {
  const PixelRect size = DisplayRenderer::reducedSize(image.bounds(), reduction);
  QImage result(static_cast<int>(size.width), static_cast<int>(size.height),
                QImage::Format_RGBA8888_Premultiplied);
  DisplayRenderer(image).render(image.bounds(), reduction, result.bits(),
                                static_cast<size_t>(result.bytesPerLine()));
  return result;
}

}  // namespace vantrel::testing
