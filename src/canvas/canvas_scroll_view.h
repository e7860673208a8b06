#pragma once

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QTimer>

#include "canvas/canvas_camera.h"
#include "canvas/canvas_pan.h"
#include "canvas/crop_canvas.h"

class QNativeGestureEvent;

namespace vantrel {

class CropOverlayView;
class EditHistory;
class VideoCanvasView;

/// The canvas of an editor: a document with the picture and its crop, seen through a viewport that
/// scrolls, zooms and pans. It forwards events to the camera and the hand, asks them, and tells the
/// surface and the overlay. Main thread.
class CanvasScrollView final : public QAbstractScrollArea {
  Q_OBJECT

 public:
  /// `history` outlives the view.
  explicit CanvasScrollView(EditHistory& history, QWidget* parent = nullptr);
  ~CanvasScrollView() override;

  [[nodiscard]] VideoCanvasView* canvas() const { return m_canvas; }
  [[nodiscard]] CropOverlayView* overlay() const { return m_overlay; }
  [[nodiscard]] const CanvasCamera& camera() const { return m_camera; }
  [[nodiscard]] const CanvasPan& pan() const { return m_pan; }

  /// Takes what the editor now wants.
  void update(const CropCanvas& canvas);

  /// Called by the overlay and the surface with positions in points of the viewport.
  void beginPan(Qt::MouseButton button, const QPointF& position);
  void dragPan(const QPointF& position);
  void endPan();

 Q_SIGNALS:
  /// The user has changed the zoom, or (`fit` is true) the fitted picture has another one.
  void zoomChanged(double zoom, bool fit);
  void cropChanged(const vantrel::CropMargins& crop);
  void fitRequested();
  void exitPreviewRequested();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void applyCamera();
  void publishZoom();

  CropCanvas m_shown;
  CanvasCamera m_camera;
  CanvasPan m_pan;
  VideoCanvasView* m_canvas;
  CropOverlayView* m_overlay;
  QElapsedTimer m_clock;
  QTimer m_moveTimer;
  QTimer m_scrollRestTimer;
};

}  // namespace vantrel
