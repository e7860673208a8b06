#pragma once

#include <QPointer>
#include <optional>

#include "controls/slider_scale.h"
#include "controls/spoken_slider.h"

namespace vantrel {

class EditHistory;

/// A slider on a number of the edit history: dragging it is one transaction, each key one edit. It
/// takes no turn of the wheel, which scrolls what it lies in. Main thread.
class EditSlider final : public SpokenSlider {
  Q_OBJECT

 public:
  /// `history` outlives the dragging.
  explicit EditSlider(EditHistory& history, QWidget* parent = nullptr);
  ~EditSlider() override;

  [[nodiscard]] const SliderScale& scale() const { return m_scale; }
  /// The number itself, on a step or not.
  [[nodiscard]] double number() const override { return m_number; }
  [[nodiscard]] Span span() const override;

  /// Shows a number, as near as the scale allows; emits nothing.
  void showNumber(double number, const SliderScale& scale);
  void choose(double number) override;

 Q_SIGNALS:
  void numberChosen(double number);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void follow(int x);
  void beginDrag();
  void endDrag();
  void correctStep(int action);
  void takeStep(int step);

  QPointer<EditHistory> m_history;
  SliderScale m_scale;
  double m_number = 0;
  /// The number at the start of the drag that is going on: its place gives it back exactly.
  std::optional<double> m_dragStart;
  /// From the left edge of the knob to where it is held, in points.
  int m_grip = 0;
};

}  // namespace vantrel
