#include "canvas/canvas_scroll_view.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "canvas/canvas_input.h"
#include "canvas/crop_canvas_fields.h"
#include "canvas/crop_overlay_view.h"
#include "canvas/video_canvas_view.h"
#include "canvas/window_remaking.h"
#include "controls/floating_scroll_bar.h"
#include "controls/motion.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

constexpr int kMoveTickMilliseconds = static_cast<int>(CanvasCamera::kTickSeconds * 1000);

bool isSamePicture(const Bitmap& one, const Bitmap& other) {
  if (one.isEmpty() || other.isEmpty()) return one.isEmpty() == other.isEmpty();
  return one.row(0) == other.row(0);
}

/// Stands in the place of a surface that this computer cannot draw.
QWidget* makeNotice() {
  auto* notice = new QLabel;
  notice->setAlignment(Qt::AlignCenter);
  notice->setWordWrap(true);
  notice->setAutoFillBackground(true);
  return notice;
}

CanvasCamera::Wish wishOf(const CropCanvas& canvas) {
  return {canvas.sourceSize,
          canvas.zoom,
          canvas.fit,
          canvas.cameraRequest,
          canvas.centerCameraOnRequest,
          canvas.framingInsets};
}

}  // namespace

CanvasScrollView::CanvasScrollView(EditHistory& history, QWidget* parent, Surface surface)
    : QAbstractScrollArea(parent), m_canvas(new VideoCanvasView) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::ClickFocus);
  setAccessibleName(tr("Canvas"));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // What is behind it shows until the surface comes.
  viewport()->setAutoFillBackground(false);
  m_overlay = new CropOverlayView(history, *this);
  m_horizontalBar = new FloatingScrollBar(Qt::Horizontal, viewport());
  m_verticalBar = new FloatingScrollBar(Qt::Vertical, viewport());
  m_clock.start();
  m_moveTimer.setTimerType(Qt::PreciseTimer);
  m_moveTimer.setInterval(kMoveTickMilliseconds);
  m_scrollRestTimer.setSingleShot(true);
  m_scrollRestTimer.setInterval(CanvasPan::kScrollRestMilliseconds);
  m_publication.setSingleShot(true);
  watchOverlay(history);
  watchInput();
  if (surface == Surface::atOnce || PictureSurface::isSupportKnown()) prepareSurface();
}

CanvasScrollView::~CanvasScrollView() {
  if (viewport() != m_canvas) delete m_canvas;
}

void CanvasScrollView::prepareSurface() {
  if (std::exchange(m_hasSurface, true)) return;
  QWidget* const surface = PictureSurface::isSupported() ? m_canvas : makeNotice();
  const WindowRemaking window(*this);
  surface->setMouseTracking(true);
  // In the window first: what then moves within it keeps its place on the way of the Tab key.
  surface->setParent(this);
  // The old viewport goes with all that lies on it.
  for (QWidget* over : std::initializer_list<QWidget*>{m_overlay, m_horizontalBar, m_verticalBar}) {
    over->setParent(surface);
    over->show();
  }
  setViewport(surface);
  m_overlay->setVisible(surface == m_canvas);
  surface->lower();
  showNotice();
}

void CanvasScrollView::watchOverlay(EditHistory& history) {
  connect(m_overlay, &CropOverlayView::cropChanged, this, &CanvasScrollView::cropChanged);
  connect(m_overlay, &CropOverlayView::editBegan, &history, &EditHistory::begin);
  connect(m_overlay, &CropOverlayView::editEnded, &history, &EditHistory::end);
  connect(m_overlay, &CropOverlayView::fitRequested, this, &CanvasScrollView::fitRequested);
  connect(m_overlay, &CropOverlayView::appearanceChanged, this, &CanvasScrollView::positionPicture);
  connect(m_canvas, &VideoCanvasView::editingOpacityChanged, m_overlay->fields(),
          &CropCanvasFields::setOpacity);
  // Not every change of the density is told, but each is drawn.
  connect(m_canvas, &PictureSurface::frameDrawn, this, &CanvasScrollView::takeDevicePixelRatio,
          Qt::QueuedConnection);
}

void CanvasScrollView::watchInput() {
  connect(&m_monitor, &CanvasEventMonitor::spaceHeldChanged, this, [this](bool held) {
    m_pan.setSpaceHeld(held);
    updateCursors();
  });
  connect(&m_monitor, &CanvasEventMonitor::zoomed, this, &CanvasScrollView::zoomAt);
  connect(&m_monitor, &CanvasEventMonitor::fitRequested, this, &CanvasScrollView::fitRequested);
  connect(&m_monitor, &CanvasEventMonitor::exitPreviewRequested, this,
          &CanvasScrollView::exitPreviewRequested);
  connect(&m_scrollRestTimer, &QTimer::timeout, this, [this] {
    m_pan.setScrolling(false);
    updateCursors();
  });
  connect(&m_moveTimer, &QTimer::timeout, this, [this] {
    m_camera.tick(now());
    applyCamera();
  });
  connect(&m_publication, &QTimer::timeout, this, &CanvasScrollView::publishZoom);
  connect(m_horizontalBar, &QScrollBar::valueChanged, this,
          [this](int x) { scrollTo(QPointF(x, m_camera.scrollOffset().y())); });
  connect(m_verticalBar, &QScrollBar::valueChanged, this,
          [this](int y) { scrollTo(QPointF(m_camera.scrollOffset().x(), y)); });
}

double CanvasScrollView::now() const {
  return static_cast<double>(m_clock.nsecsElapsed()) / 1e9;
}

void CanvasScrollView::update(const CropCanvas& canvas) {
  const bool mediaChanged =
      m_shown.player != canvas.player || !isSamePicture(m_shown.image, canvas.image);
  const bool previewChanged = m_shown.previewOnly != canvas.previewOnly;
  const bool cropChanged = m_overlay->overlay().crop() != canvas.crop;
  if (mediaChanged || m_shown.sourceSize != canvas.sourceSize) abandonDrags();
  m_shown = canvas;
  if (!canvas.sourceSize.isEmpty()) prepareSurface();
  m_camera.update(wishOf(canvas), mediaChanged,
                  previewChanged || (canvas.previewOnly && cropChanged), now());
  if (!showsMotion(*this)) m_camera.finishMove();

  m_canvas->setCanvasColor(canvas.canvasColor);
  showNotice();
  if (mediaChanged) m_canvas->setMedia(canvas.image, canvas.player);
  m_monitor.setPreviewOnly(canvas.previewOnly);
  m_overlay->setEditingEnabled(!canvas.previewOnly);
  m_overlay->setCrop(canvas.crop);
  applyCamera();
}

void CanvasScrollView::showNotice() {
  auto* const notice = qobject_cast<QLabel*>(viewport());
  if (!notice) return;
  QPalette colors = palette();
  colors.setColor(QPalette::Window, m_shown.canvasColor);
  notice->setPalette(colors);
  notice->setText(m_shown.sourceSize.isEmpty()
                      ? QString()
                      : tr("The picture cannot be shown, because this display has no OpenGL 3.2. "
                           "Everything else works."));
}

void CanvasScrollView::applyCamera() {
  if (m_camera.isMoving() != m_moveTimer.isActive()) {
    if (m_camera.isMoving()) {
      m_moveTimer.start();
    } else {
      m_moveTimer.stop();
    }
  }
  m_overlay->setProjection(m_camera.projection());
  m_overlay->updateFields();
  positionPicture();
  const QSizeF document = m_camera.documentSize();
  const QPointF offset = m_camera.scrollOffset();
  m_horizontalBar->mirror(document.width(), m_camera.viewport().width(), offset.x());
  m_verticalBar->mirror(document.height(), m_camera.viewport().height(), offset.y());
  m_overlay->updateCursor();
  if (m_camera.wish().fit && !m_camera.isMoving()) m_publication.start();
}

void CanvasScrollView::positionPicture() {
  m_canvas->position(m_camera.projection(), m_overlay->overlay().crop(), m_shown.previewOnly);
  m_canvas->setFocusRing(m_overlay->focusRing());
}

void CanvasScrollView::publishZoom() {
  if (const auto zoom = m_camera.takeFittedZoom()) Q_EMIT zoomChanged(*zoom, true);
}

void CanvasScrollView::scrollTo(const QPointF& offset) {
  m_camera.scrollTo(offset);
  applyCamera();
  m_horizontalBar->wake();
  m_verticalBar->wake();
}

void CanvasScrollView::zoomAt(const QPointF& globalPosition, double factor) {
  if (!m_camera.zoomAround(viewport()->mapFromGlobal(globalPosition), factor)) return;
  applyCamera();
  m_horizontalBar->wake();
  m_verticalBar->wake();
  Q_EMIT zoomChanged(m_camera.wish().zoom, false);
}

void CanvasScrollView::beginPan(Qt::MouseButton button, const QPointF& position) {
  if (!m_pan.begin(button, position, m_camera.scrollOffset())) return;
  m_camera.stopMove();
  setFocus(Qt::MouseFocusReason);
  applyCamera();
  updateCursors();
}

void CanvasScrollView::dragPan(const QPointF& position) {
  if (const auto offset = m_pan.drag(position)) scrollTo(*offset);
}

void CanvasScrollView::endPan() {
  m_pan.end();
  updateCursors();
}

void CanvasScrollView::updateCursors() {
  switch (m_pan.hand()) {
    case CanvasPan::Hand::none:
      viewport()->unsetCursor();
      break;
    case CanvasPan::Hand::open:
      viewport()->setCursor(Qt::OpenHandCursor);
      break;
    case CanvasPan::Hand::closed:
      viewport()->setCursor(Qt::ClosedHandCursor);
      break;
  }
  m_overlay->updateCursor();
}

void CanvasScrollView::takeDevicePixelRatio() {
  if (m_camera.devicePixelRatio() == devicePixelRatioF()) return;
  m_camera.setDevicePixelRatio(devicePixelRatioF());
  applyCamera();
}

void CanvasScrollView::abandonDrags() {
  m_overlay->endDrag();
  if (m_pan.isPanning()) endPan();
  m_horizontalBar->letGo();
  m_verticalBar->letGo();
}

bool CanvasScrollView::event(QEvent* event) {
  const bool taken = QAbstractScrollArea::event(event);
  switch (event->type()) {
    case QEvent::EnabledChange:
    case QEvent::Hide:
    case QEvent::WindowBlocked:
      abandonDrags();
      break;
    case QEvent::Show:
    case QEvent::ScreenChangeInternal:
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    case QEvent::DevicePixelRatioChange:
#endif
      takeDevicePixelRatio();
      break;
    default:
      break;
  }
  return taken;
}

bool CanvasScrollView::viewportEvent(QEvent* event) {
  switch (event->type()) {
    case QEvent::Paint:
      // The surface paints itself.
      return false;
    case QEvent::NativeGesture:
      return m_monitor.takeZoom(*event);
    default:
      return QAbstractScrollArea::viewportEvent(event);
  }
}

void CanvasScrollView::resizeEvent(QResizeEvent* /*event*/) {
  m_camera.setDevicePixelRatio(devicePixelRatioF());
  m_camera.setViewport(contentsRect().size());
  m_overlay->setGeometry(viewport()->rect());
  placeBars();
  applyCamera();
}

void CanvasScrollView::placeBars() {
  const int thickness = FloatingScrollBar::kThickness;
  const int right = std::max(0, viewport()->width() - thickness);
  const int bottom = std::max(0, viewport()->height() - thickness);
  m_horizontalBar->setGeometry(0, bottom, right, thickness);
  m_verticalBar->setGeometry(right, 0, thickness, bottom);
}

void CanvasScrollView::hideEvent(QHideEvent* event) {
  QAbstractScrollArea::hideEvent(event);
  m_camera.finishMove();
  applyCamera();
}

void CanvasScrollView::wheelEvent(QWheelEvent* event) {
  event->accept();
  if (m_monitor.takeZoom(*event)) return;
  const CanvasInput::WheelMotion motion = CanvasEventMonitor::motionOf(*event);
  scrollTo(m_camera.scrollOffset() +
           CanvasInput::scrollDistance(motion, QApplication::wheelScrollLines()));
  if (!motion.isPrecise()) return;
  m_pan.setScrolling(true);
  m_scrollRestTimer.start();
  updateCursors();
}

void CanvasScrollView::keyPressEvent(QKeyEvent* event) {
  event->ignore();
}

void CanvasScrollView::mousePressEvent(QMouseEvent* event) {
  beginPan(event->button(), event->position());
  // The overlay takes the left button unless it is a preview.
  if (event->button() == Qt::LeftButton && !m_pan.isPanning()) {
    if (m_shown.previewOnly) setFocus(Qt::MouseFocusReason);
    event->setAccepted(m_shown.previewOnly);
  }
}

void CanvasScrollView::mouseDoubleClickEvent(QMouseEvent* event) {
  beginPan(event->button(), event->position());
  if (event->button() == Qt::LeftButton && !m_pan.isPanning()) Q_EMIT fitRequested();
}

void CanvasScrollView::mouseMoveEvent(QMouseEvent* event) {
  // A release may get lost to a menu or to another program.
  if (event->buttons() == Qt::NoButton && m_pan.isPanning()) endPan();
  dragPan(event->position());
}

void CanvasScrollView::mouseReleaseEvent(QMouseEvent* /*event*/) {
  endPan();
}

}  // namespace vantrel
