#include "controls/edit_slider.h"

#include <QMouseEvent>
#include <QSignalBlocker>
#include <QStyleOptionSlider>
#include <QStylePainter>

#include "model/edit_history.h"

namespace vantrel {

EditSlider::EditSlider(EditHistory& history, QWidget* parent)
    : SpokenSlider(parent), m_history(&history) {
  setFocusPolicy(Qt::StrongFocus);
  connect(this, &QSlider::actionTriggered, this, &EditSlider::correctStep);
  connect(this, &QSlider::valueChanged, this, &EditSlider::takeStep);
  connect(this, &QSlider::sliderPressed, this, &EditSlider::beginDrag);
  // Comes also when the slider is disabled in the middle of a drag.
  connect(this, &QSlider::sliderReleased, this, &EditSlider::endDrag);
}

EditSlider::~EditSlider() {
  endDrag();
}

SpokenSlider::Span EditSlider::span() const {
  return {m_scale.lower, m_scale.upper, 1.0 / m_scale.stepsPerUnit};
}

void EditSlider::showNumber(double number, const SliderScale& scale) {
  const QSignalBlocker quiet(this);
  m_number = number;
  m_scale = scale;
  setMaximum(scale.last());
  setValue(scale.closest(number));
}

void EditSlider::choose(double number) {
  if (isEnabled()) setValue(m_scale.closest(number));
}

void EditSlider::beginDrag() {
  m_dragStart = m_number;
  m_history->begin();
}

void EditSlider::endDrag() {
  if (!m_dragStart) return;
  m_dragStart.reset();
  if (m_history) m_history->end();
}

// The toolkit counts from the step that is shown; what counts is the number.
void EditSlider::correctStep(int action) {
  if (action != SliderSingleStepAdd && action != SliderSingleStepSub) return;
  const int step = m_scale.next(m_number, action == SliderSingleStepAdd);
  setSliderPosition(step);
  // The number was beside the step that is shown, and comes to lie on it.
  if (step == value() && m_number != m_scale.value(step)) takeStep(step);
}

void EditSlider::takeStep(int step) {
  const bool isBack = m_dragStart && step == m_scale.closest(*m_dragStart);
  m_number = isBack ? *m_dragStart : m_scale.value(step);
  Q_EMIT numberChosen(m_number);
}

void EditSlider::paintEvent(QPaintEvent* /*event*/) {
  QStyleOptionSlider option;
  initStyleOption(&option);
  option.subControls = QStyle::SC_SliderGroove | QStyle::SC_SliderHandle;
  if (isSliderDown()) {
    option.activeSubControls = QStyle::SC_SliderHandle;
    option.state |= QStyle::State_Sunken;
  }
  QStylePainter(this).drawComplexControl(QStyle::CC_Slider, option);
}

void EditSlider::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QRect knob =
      style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
  const QPoint point = event->position().toPoint();
  const bool isOnKnob = knob.contains(point);
  m_grip = isOnKnob ? point.x() - knob.x() : knob.width() / 2;
  setSliderDown(true);
  if (!isOnKnob) follow(point.x());
  update();
}

void EditSlider::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) {
    follow(event->position().toPoint().x());
  } else {
    event->ignore();
  }
}

void EditSlider::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  setSliderDown(false);
  update();
}

void EditSlider::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

void EditSlider::hideEvent(QHideEvent* event) {
  QSlider::hideEvent(event);
  if (!event->spontaneous()) setSliderDown(false);
}

void EditSlider::follow(int x) {
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QRect groove =
      style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
  const QRect knob =
      style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
  setSliderPosition(QStyle::sliderValueFromPosition(minimum(), maximum(), x - m_grip - groove.x(),
                                                    groove.width() - knob.width(),
                                                    option.upsideDown));
}

}  // namespace vantrel
