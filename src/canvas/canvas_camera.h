#pragma once

#include <QMarginsF>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <cstdint>
#include <optional>

#include "canvas/canvas_projection.h"

namespace vantrel {

/// Where the source lies and how large it is: it lies in a scrolling document, which is seen
/// through a viewport. The camera keeps what it pivots on in place, follows the zoom and the fit
/// that are wanted, and moves smoothly on request. A plain value that is fed sizes and time.
///
/// Points are those of the view; a scale is in points for each source pixel, a zoom in device
/// pixels for each source pixel. A focus is a fraction of the source, from 0 to 1 on each axis.
/// Whatever it is fed, its geometry is finite: a size that no picture has counts as 0 × 0.
class CanvasCamera final {
 public:
  /// How long a move lasts, in seconds, and how often it ticks.
  static constexpr double kMoveSeconds = 0.25, kTickSeconds = 1.0 / 60;

  /// What the editor wants to see.
  struct Wish {
    /// In source pixels.
    QSizeF sourceSize{0, 0};
    double zoom = 1;
    bool fit = true;
    /// Each change asks for a smooth move.
    int64_t request = 0;
    /// Whether that move centres the source as well.
    bool centersOnRequest = true;
    /// What a framed source keeps clear of, in points from the viewport's edges.
    QMarginsF insets = {};
  };

  [[nodiscard]] const Wish& wish() const { return m_wish; }
  [[nodiscard]] const QSizeF& viewport() const { return m_viewport; }
  [[nodiscard]] double devicePixelRatio() const { return m_devicePixelRatio; }
  [[nodiscard]] const QSizeF& documentSize() const { return m_documentSize; }
  /// The document's point at the viewport's top left corner.
  [[nodiscard]] const QPointF& scrollOffset() const { return m_scrollOffset; }
  /// Where the whole source lies in the document; empty before the first layout.
  [[nodiscard]] const QRectF& imageFrame() const { return m_imageFrame; }
  /// The zoom that is shown; 0 while there is nothing to show.
  [[nodiscard]] double shownZoom() const;
  /// The point of the viewport on which the camera pivots: the middle of what the insets leave.
  [[nodiscard]] QPointF anchor() const;
  /// The scale at which the source, with free room for the fields around it, fits.
  [[nodiscard]] double fittedScale() const;
  [[nodiscard]] bool isMoving() const { return m_move.has_value(); }
  /// From source pixels to points of the viewport, with the source's origin on a whole device
  /// pixel.
  [[nodiscard]] CanvasProjection projection() const;
  /// The zoom of a fitted source, each value once; absent while it is moving, while the fit is off,
  /// and when it has been taken already. To be asked from the event loop, never within a layout.
  [[nodiscard]] std::optional<double> takeFittedZoom();

  /// The editor has changed. `mediaChanged`: another picture, which is centred. `needsLayout`:
  /// whatever else may only change through a layout. `now`: monotonic seconds.
  void update(const Wish& wish, bool mediaChanged, bool needsLayout, double now);
  /// A layout of the view; the size may be as before.
  void setViewport(const QSizeF& points);
  /// Device pixels for each point, above 0; the zoom stays, so the scale changes.
  void setDevicePixelRatio(double ratio);
  /// Goes on with a move, if there is one.
  void tick(double now);
  /// Leaves the picture where the move has brought it.
  void stopMove();
  /// Lands a move at once, if there is one.
  void finishMove();
  /// Limited to the document; a move goes on.
  void scrollTo(const QPointF& offset);
  /// Changes the shown zoom by a factor, keeping what lies under a point of the viewport. Turns the
  /// fit off; false, with nothing changed, when there is nothing to zoom.
  bool zoomAround(const QPointF& viewportPoint, double factor);

 private:
  struct Move {
    double start = 0, startScale = 0, endScale = 0, scale = 0;
    QPointF startFocus, endFocus;
  };

  [[nodiscard]] double wantedScale() const;
  /// What lies at a point of the viewport; the middle on an axis without extent.
  [[nodiscard]] QPointF focusAt(const QPointF& viewportPoint) const;
  /// Computes all geometry anew, with the focus on the anchor. Without a viewport it stays as it
  /// is.
  void layOut(const QPointF& focus);
  void publishFittedZoom();
  void forgetFittedZoom();
  void startMove(double now);

  Wish m_wish;
  QSizeF m_viewport{0, 0};
  double m_devicePixelRatio = 1;
  double m_scale = 0;
  QSizeF m_documentSize{0, 0};
  QPointF m_scrollOffset{0, 0};
  QRectF m_imageFrame;
  /// The anchor of the last layout: what lies there stays on the anchor, wherever a change of the
  /// viewport or of the insets moves it.
  QPointF m_pivot;
  std::optional<Move> m_move;
  /// The fitted zoom that was last handed out, or is about to be.
  std::optional<double> m_publishedZoom;
  bool m_hasUntakenZoom = false;
};

}  // namespace vantrel
