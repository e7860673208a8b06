#pragma once

#include <QWidget>

#include "canvas/crop_overlay.h"

namespace vantrel {

class CanvasScrollView;
class CropCanvasFields;
class EditHistory;

/// The transparent view over the picture: it takes the mouse and the keys for the crop, carries the
/// fields, and stands for crop and handles to assistive tools. The surface beneath draws what it
/// shows. Its points are those of the viewport. Main thread.
class CropOverlayView final : public QWidget {
  Q_OBJECT

 public:
  /// `history` outlives the view.
  CropOverlayView(EditHistory& history, CanvasScrollView& canvas);
  ~CropOverlayView() override;

  [[nodiscard]] const CropOverlay& overlay() const { return m_overlay; }
  [[nodiscard]] CropCanvasFields* fields() const { return m_fields; }
  /// The handle that the keyboard moves; absent while the arrows move the whole crop.
  [[nodiscard]] const std::optional<CropHandle>& focusedHandle() const { return m_focusedHandle; }

  void setProjection(const CanvasProjection& projection);
  void setCrop(const CropMargins& crop);
  void setEditingEnabled(bool enabled);
  void focusHandle(const std::optional<CropHandle>& handle);
  /// Moves the focused handle, or the whole crop, as an arrow key does.
  void nudge(CropOverlay::Direction direction, bool isLarge);
  /// Sets one margin as a field does.
  void setMargin(CropMargins::Edge edge, int64_t value);
  void updateFields();
  /// The cursor follows what lies under the pointer.
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
  void take(const CropMargins& crop);

  CanvasScrollView& m_canvas;
  EditHistory& m_history;
  CropOverlay m_overlay;
  std::optional<CropHandle> m_focusedHandle;
  CropCanvasFields* m_fields;
};

}  // namespace vantrel
