#include "canvas/crop_overlay_view.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_accessibility.h"
#include "canvas/crop_canvas_field.h"
#include "canvas/crop_canvas_fields.h"
#include "canvas/crop_cursors.h"
#include "canvas/crop_focus_ring.h"
#include "controls/borrowed_focus.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

std::optional<CropOverlay::Direction> arrowDirection(int key) {
  switch (key) {
    case Qt::Key_Left:
      return CropOverlay::Direction::left;
    case Qt::Key_Right:
      return CropOverlay::Direction::right;
    case Qt::Key_Up:
      return CropOverlay::Direction::up;
    case Qt::Key_Down:
      return CropOverlay::Direction::down;
    default:
      return std::nullopt;
  }
}

}  // namespace

CropOverlayView::CropOverlayView(EditHistory& history, CanvasScrollView& canvas)
    : QWidget(canvas.viewport()),
      m_canvas(canvas),
      m_history(history),
      m_fields(new CropCanvasFields(history, this)) {
  // Not by click: a press that pans, and one without a picture, leave the focus to others.
  setFocusPolicy(Qt::TabFocus);
  setMouseTracking(true);
  connect(m_fields, &CropCanvasFields::marginEdited, this, &CropOverlayView::setMargin);
  showCursor(Qt::ArrowCursor, Qt::ArrowCursor);
  CropAccessibility::install();
}

CropOverlayView::~CropOverlayView() {
  CropAccessibility::forget(*this);
}

int64_t CropOverlayView::pixelStep() const {
  return m_history.pixelStep();
}

std::vector<ColoredRectangle> CropOverlayView::focusRing() const {
  if (!m_showsRing || !hasFocus() || !hasSource()) return {};
  const FocusColors colors{palette().color(QPalette::Highlight), palette().color(QPalette::Base)};
  return cropFocusRing(m_focusedHandle, m_overlay.selection(), colors, devicePixelRatioF());
}

void CropOverlayView::setProjection(const CanvasProjection& projection) {
  if (projection == m_overlay.projection()) return;
  const bool hadSource = hasSource();
  m_overlay.setProjection(projection);
  updateFields();
  updateCursor();
  Q_EMIT appearanceChanged();
  CropAccessibility::announcePlaces(*this);
  if (hadSource != hasSource()) CropAccessibility::announceShown(*this);
}

void CropOverlayView::setCrop(const CropMargins& crop) {
  if (crop == m_overlay.crop()) return;
  const CropMargins before = m_overlay.crop();
  m_overlay.setCrop(crop);
  updateFields();
  updateCursor();
  Q_EMIT appearanceChanged();
  CropAccessibility::announceCrop(*this, before);
}

void CropOverlayView::setEditingEnabled(bool enabled) {
  if (enabled == m_overlay.isEditingEnabled()) return;
  m_overlay.setEditingEnabled(enabled);
  setAttribute(Qt::WA_TransparentForMouseEvents, !enabled);
  // What has the focus keeps it, and the arrow keys.
  setFocusPolicy(enabled ? Qt::TabFocus : Qt::NoFocus);
  if (!enabled) aimKeyboard(std::nullopt, m_showsRing);
  m_fields->setEditingEnabled(enabled);
  updateCursor();
  CropAccessibility::announceShown(*this);
}

void CropOverlayView::endDrag() {
  if (!m_overlay.grip()) return;
  Q_EMIT editEnded();
  m_overlay.release();
  updateCursor();
}

void CropOverlayView::focusHandle(const std::optional<CropHandle>& handle) {
  if (m_overlay.isEditingEnabled()) aimKeyboard(handle, true);
}

void CropOverlayView::nudge(const std::optional<CropHandle>& handle,
                            CropOverlay::Direction direction, bool isLarge) {
  const CropMargins before = m_overlay.crop();
  m_overlay.setPixelStep(pixelStep());
  take(handle ? m_overlay.nudge(*handle, direction, isLarge) : m_overlay.nudge(direction, isLarge),
       before);
}

void CropOverlayView::setMargin(CropMargins::Edge edge, int64_t value) {
  if (!hasSource()) return;
  const CropMargins before = m_overlay.crop();
  CropMargins crop = before;
  crop.set(edge, value, m_overlay.sourceSize(), pixelStep());
  m_overlay.setCrop(crop);
  take(crop, before);
}

void CropOverlayView::updateFields() {
  const CanvasProjection& projection = m_overlay.projection();
  m_fields->update({m_overlay.crop(), projection.sourceSize(), projection.imageFrame()},
                   m_overlay.selection());
}

void CropOverlayView::updateCursor() {
  const CanvasPan::Hand hand = m_canvas.pan().hand();
  if (hand != CanvasPan::Hand::none) {
    const QCursor cursor(hand == CanvasPan::Hand::open ? Qt::OpenHandCursor : Qt::ClosedHandCursor);
    showCursor(cursor, cursor);
    return;
  }
  if (!m_overlay.grip()) m_zone = m_pointer ? m_overlay.cursorAt(*m_pointer) : CropCursor::arrow;
  showCursor(CropCursors::cursor(m_zone, devicePixelRatioF()), Qt::ArrowCursor);
}

bool CropOverlayView::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::Enter:
      m_pointer = static_cast<QEnterEvent*>(event)->position();
      updateCursor();
      break;
    case QEvent::Leave:
      m_pointer.reset();
      break;
    case QEvent::PaletteChange:
      Q_EMIT appearanceChanged();
      break;
    default:
      break;
  }
  return QWidget::event(event);
}

bool CropOverlayView::focusNextPrevChild(bool next) {
  // The fields hand on their own steps through here too.
  if (!hasFocus() || !m_overlay.isEditingEnabled() || !hasSource()) {
    return QWidget::focusNextPrevChild(next);
  }
  constexpr int kWholeCrop = -1;
  const int from = m_focusedHandle ? static_cast<int>(*m_focusedHandle) : kWholeCrop;
  const int to = next ? from + 1 : from - 1;
  if (to < kWholeCrop || to == static_cast<int>(kCropHandles.size())) {
    return QWidget::focusNextPrevChild(next);
  }
  aimKeyboard(to == kWholeCrop ? std::nullopt : std::optional(static_cast<CropHandle>(to)), true);
  return true;
}

void CropOverlayView::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  if (isBorrowedFocus(event->reason())) {
    Q_EMIT appearanceChanged();
    if (m_focusedHandle) announceFocusLater();
    return;
  }
  const bool comesBackwards = event->reason() == Qt::BacktabFocusReason;
  const bool comesByKey = comesBackwards || event->reason() == Qt::TabFocusReason ||
                          event->reason() == Qt::ShortcutFocusReason;
  const bool entersLast = comesBackwards && m_overlay.isEditingEnabled() && hasSource();
  aimKeyboard(entersLast ? std::optional(kCropHandles.back()) : std::nullopt, comesByKey);
}

void CropOverlayView::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  if (isBorrowedFocus(event->reason())) {
    Q_EMIT appearanceChanged();
  } else {
    aimKeyboard(std::nullopt, false);
  }
}

void CropOverlayView::mousePressEvent(QMouseEvent* event) {
  m_pointer = event->position();
  if (event->button() != Qt::LeftButton || !m_overlay.isEditingEnabled()) {
    event->ignore();
    return;
  }
  if (!handToCanvas(*event)) press(event->position());
}

void CropOverlayView::mouseDoubleClickEvent(QMouseEvent* event) {
  m_pointer = event->position();
  if (event->button() != Qt::LeftButton || !m_overlay.isEditingEnabled()) {
    event->ignore();
    return;
  }
  if (!handToCanvas(*event)) Q_EMIT fitRequested();
}

void CropOverlayView::mouseMoveEvent(QMouseEvent* event) {
  m_pointer = event->position();
  if (!event->buttons().testFlag(Qt::LeftButton)) {
    // A release may get lost to a menu or to another program.
    endDrag();
    updateCursor();
    event->ignore();
    return;
  }
  if (m_canvas.pan().isPanning()) {
    m_canvas.dragPan(event->position());
    return;
  }
  // An undo in the middle of a drag closes the transaction.
  if (m_overlay.grip()) m_history.begin();
  const CropMargins before = m_overlay.crop();
  m_overlay.setPixelStep(pixelStep());
  const bool keepsRatio = event->modifiers().testFlag(Qt::ShiftModifier);
  if (const auto crop = m_overlay.drag(event->position(), keepsRatio)) take(*crop, before);
}

void CropOverlayView::mouseReleaseEvent(QMouseEvent* event) {
  m_pointer = event->position();
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  if (m_canvas.pan().isPanning()) {
    m_canvas.endPan();
    // Another button pans in the middle of a drag.
    endDrag();
    return;
  }
  Q_EMIT editEnded();
  m_overlay.release();
  updateCursor();
}

void CropOverlayView::keyPressEvent(QKeyEvent* event) {
  if (const auto direction = arrowDirection(event->key())) {
    nudge(m_focusedHandle, *direction, event->modifiers().testFlag(Qt::ShiftModifier));
  } else {
    QWidget::keyPressEvent(event);
  }
}

bool CropOverlayView::handToCanvas(const QMouseEvent& event) {
  if (!hasSource()) return true;
  if (!m_canvas.pan().isSpaceHeld()) return false;
  m_canvas.beginPan(event.button(), event.position());
  return true;
}

void CropOverlayView::press(const QPointF& point) {
  setFocus(Qt::MouseFocusReason);
  if (m_focusedHandle || m_showsRing) aimKeyboard(std::nullopt, false);
  m_overlay.setPixelStep(pixelStep());
  if (m_overlay.press(point)) Q_EMIT editBegan();
  const auto& grip = m_overlay.grip();
  if (grip && !grip->handle) m_zone = CropCursor::move;
  updateCursor();
}

void CropOverlayView::take(const CropMargins& crop, const CropMargins& before) {
  updateFields();
  updateCursor();
  Q_EMIT appearanceChanged();
  Q_EMIT cropChanged(crop);
  CropAccessibility::announceCrop(*this, before);
}

void CropOverlayView::aimKeyboard(const std::optional<CropHandle>& handle, bool showsRing) {
  const bool moves = handle != m_focusedHandle;
  m_focusedHandle = handle;
  m_showsRing = showsRing;
  if (moves) Q_EMIT focusedHandleChanged();
  Q_EMIT appearanceChanged();
  if (moves) announceFocusLater();
}

void CropOverlayView::announceFocusLater() {
  if (!QAccessible::isActive() || !hasFocus()) return;
  QMetaObject::invokeMethod(
      this, [this] { CropAccessibility::announceFocus(*this); }, Qt::QueuedConnection);
}

void CropOverlayView::showCursor(const QCursor& ownCursor, const QCursor& panelCursor) {
  if (cursor() != ownCursor) setCursor(ownCursor);
  for (const CropMargins::Edge edge : CropMargins::kEdges) {
    QWidget* const panel = m_fields->field(edge);
    if (panel && panel->cursor() != panelCursor) panel->setCursor(panelCursor);
  }
}

}  // namespace vantrel
