#pragma once

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QTimer>

#include "canvas/canvas_camera.h"
#include "canvas/canvas_event_monitor.h"
#include "canvas/canvas_pan.h"
#include "canvas/crop_canvas.h"

namespace vantrel {

class FloatingScrollBar;
class CropOverlayView;
class EditHistory;
class VideoCanvasView;

/// The canvas of an editor: a document with the picture and its crop, seen through a viewport that
/// scrolls, zooms and pans. It forwards events to the camera and the hand, asks them, and tells the
/// surface and the overlay. Main thread.
class CanvasScrollView final : public QAbstractScrollArea {
  Q_OBJECT

 public:
  /// When the surface comes. The first one of a program takes longer than all else in its window;
  /// one that comes to a window on the screen has the toolkit make that window anew. So
  /// `withPicture` waits for a picture, unless OpenGL is loaded already.
  enum class Surface { atOnce, withPicture };

  /// `history` outlives the view.
  explicit CanvasScrollView(EditHistory& history, QWidget* parent = nullptr,
                            Surface surface = Surface::atOnce);
  ~CanvasScrollView() override;

  [[nodiscard]] VideoCanvasView* canvas() const { return m_canvas; }
  [[nodiscard]] CropOverlayView* overlay() const { return m_overlay; }
  [[nodiscard]] FloatingScrollBar* floatingBar(Qt::Orientation orientation) const {
    return orientation == Qt::Horizontal ? m_horizontalBar : m_verticalBar;
  }
  [[nodiscard]] const CanvasCamera& camera() const { return m_camera; }
  [[nodiscard]] const CanvasPan& pan() const { return m_pan; }

  /// Has the surface now; again: nothing.
  void prepareSurface();
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
  bool viewportEvent(QEvent* event) override;
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void watchOverlay(EditHistory& history);
  void watchInput();
  [[nodiscard]] double now() const;
  /// What stands in the place of a surface that this computer cannot draw.
  void showNotice();
  /// Ends what a held button does when its release may never come.
  void abandonDrags();
  void applyCamera();
  void positionPicture();
  void placeBars();
  void scrollTo(const QPointF& offset);
  void zoomAt(const QPointF& globalPosition, double factor);
  void publishZoom();
  void takeDevicePixelRatio();
  void updateCursors();

  CropCanvas m_shown;
  CanvasCamera m_camera;
  CanvasPan m_pan;
  CanvasEventMonitor m_monitor{*this};
  /// In no window, and drawing nothing, while there is no surface, and where it is not supported:
  /// the toolkit fails there.
  VideoCanvasView* m_canvas;
  bool m_hasSurface = false;
  CropOverlayView* m_overlay;
  FloatingScrollBar* m_horizontalBar;
  FloatingScrollBar* m_verticalBar;
  QElapsedTimer m_clock;
  QTimer m_moveTimer;
  QTimer m_scrollRestTimer;
  QTimer m_publication;
};

}  // namespace vantrel
