#pragma once

#include <QMarginsF>
#include <QPointF>
#include <QSizeF>

namespace vantrel {

/// Where the playback bar floats over the canvas, and what it leaves free; in points, y downwards.
/// A value, made anew from measured sizes.
struct CropWorkspaceLayout {
  /// Of the whole workspace.
  QSizeF size;
  /// The measured height of the playback bar.
  double playbackHeight = 0;

  [[nodiscard]] double playbackWidth() const;
  [[nodiscard]] QPointF playbackCenter() const;
  /// What a framed picture keeps clear of.
  [[nodiscard]] QMarginsF framingInsets() const;
};

}  // namespace vantrel
