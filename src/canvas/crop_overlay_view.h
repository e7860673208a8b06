#pragma once

#include <QWidget>
#include <vector>

#include "canvas/crop_overlay.h"
#include "platform/gl/rectangle_painter.h"

namespace vantrel {

class CanvasScrollView;
class CropCanvasFields;
class EditHistory;

/// The transparent view over the picture: it takes the mouse and the keys for the crop, carries the
/// fields, and stands for crop and handles to assistive tools. The surface beneath draws what it
/// shows. Its points are those of the viewport. Main thread.
///
/// Tab reaches the crop as a whole, then each handle, then the fields.
class CropOverlayView final : public QWidget {
  Q_OBJECT

 public:
  /// A child of the canvas' viewport, which gives it its geometry. `history` outlives the view.
  CropOverlayView(EditHistory& history, CanvasScrollView& canvas);
  ~CropOverlayView() override;

  [[nodiscard]] const CropOverlay& overlay() const { return m_overlay; }
  [[nodiscard]] CropCanvasFields* fields() const { return m_fields; }
  /// The handle that the keyboard moves; absent while the arrows move the whole crop.
  [[nodiscard]] const std::optional<CropHandle>& focusedHandle() const { return m_focusedHandle; }
  /// The source pixels that an edge moves by at least.
  [[nodiscard]] int64_t pixelStep() const;
  /// What the surface draws over the crop while the keyboard moves it, in device pixels; empty when
  /// the mouse brought the focus.
  [[nodiscard]] std::vector<ColoredRectangle> focusRing() const;

  void setProjection(const CanvasProjection& projection);
  void setCrop(const CropMargins& crop);
  /// Off in preview: the mouse then reaches the surface beneath.
  void setEditingEnabled(bool enabled);
  /// Lets go of what is dragged, as the release of the button does; nothing without a drag.
  void endDrag();
  /// Does not take the keyboard focus itself. Nothing in preview.
  void focusHandle(const std::optional<CropHandle>& handle);
  /// Moves the handle, or the whole crop if it is absent, as an arrow key does.
  void nudge(const std::optional<CropHandle>& handle, CropOverlay::Direction direction,
             bool isLarge);
  /// Sets one margin as a field does; nothing without a source.
  void setMargin(CropMargins::Edge edge, int64_t value);
  void updateFields();
  /// The cursor follows what lies under the pointer, and the hand of the canvas.
  void updateCursor();

 Q_SIGNALS:
  /// A crop was made here; it may be as before.
  void cropChanged(const vantrel::CropMargins& crop);
  /// A drag that can change the crop has begun.
  void editBegan();
  /// The button has come up; may come without `editBegan`.
  void editEnded();
  void fitRequested();
  void focusedHandleChanged();
  /// What the surface draws has changed.
  void appearanceChanged();

 protected:
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] bool hasSource() const { return m_overlay.sourceSize().width() > 0; }
  /// True for a press that the crop never sees: there is nothing to crop, or it pans the canvas,
  /// which is then told.
  bool handToCanvas(const QMouseEvent& event);
  void press(const QPointF& point);
  /// Whoever moved the crop from `before` has stored it already.
  void take(const CropMargins& crop, const CropMargins& before);
  /// Once the event in hand has been told of: then it is the last word.
  void announceFocusLater();
  void aimKeyboard(const std::optional<CropHandle>& handle, bool showsRing);
  /// All over the view and the panels that float on it.
  void showCursor(const QCursor& ownCursor, const QCursor& panelCursor);

  CanvasScrollView& m_canvas;
  EditHistory& m_history;
  CropOverlay m_overlay;
  std::optional<CropHandle> m_focusedHandle;
  bool m_showsRing = false;
  /// Absent while the pointer is elsewhere.
  std::optional<QPointF> m_pointer;
  /// Of the zone under the pointer; during a drag, of the zone that was pressed.
  CropCursor m_zone = CropCursor::arrow;
  CropCanvasFields* m_fields;
};

}  // namespace vantrel
