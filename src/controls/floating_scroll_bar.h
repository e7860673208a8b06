#pragma once

#include <QScrollBar>
#include <QTimer>
#include <QVariantAnimation>
#include <optional>

namespace vantrel {

/// A thin scroll bar that floats over an edge of what it scrolls: it appears when that is scrolled,
/// can be dragged as long as it is seen, and fades when idle. Its values are points of the
/// document; `valueChanged` comes for the user's changes alone. Main thread.
class FloatingScrollBar final : public QScrollBar {
  Q_OBJECT

 public:
  /// Of the zone that takes the pointer, in points; how long an idle bar stays, and how long it
  /// fades.
  static constexpr int kThickness = 14, kIdleMilliseconds = 900, kFadeMilliseconds = 200;

  FloatingScrollBar(Qt::Orientation orientation, QWidget* parent);

  /// Where the handle is drawn, in points of the bar.
  [[nodiscard]] QRectF handle() const;
  [[nodiscard]] double opacity() const { return m_opacity; }
  /// The running fade; ended when nothing fades.
  [[nodiscard]] QVariantAnimation& fade() { return m_fade; }

  /// Mirrors a document of `extent` points, of which `page` are seen from `offset` on.
  void mirror(double extent, double page, double offset);
  /// Appears, and stays until it has been idle for long enough.
  void wake();
  /// Fades away, unless it is held or under the pointer.
  void rest();
  /// Ends the dragging of the handle.
  void letGo();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void setOpacity(double opacity);
  [[nodiscard]] bool isVertical() const { return orientation() == Qt::Vertical; }
  [[nodiscard]] double track() const;
  [[nodiscard]] double handleLength() const;
  [[nodiscard]] double handleStart() const;
  [[nodiscard]] double along(const QPointF& point) const;

  double m_opacity = 0;
  /// From the start of the handle to where it is held, in points.
  std::optional<double> m_grip;
  QTimer m_idle;
  QVariantAnimation m_fade;
};

}  // namespace vantrel
