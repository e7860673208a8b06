#include "controls/pixel_stepper.h"

#include <QAbstractButton>
#include <QPainter>

#include "controls/look_palette.h"
#include "controls/plate.h"
#include "controls/symbol_icon.h"
#include "controls/text_editing.h"
#include "controls/text_scale.h"

namespace vantrel {
namespace {

// Points.
constexpr double kRadius = 4;
constexpr int kChevron = 11;

constexpr float kHoverOpacity = 0.08F, kPressOpacity = 0.16F;

/// Lights up its half of the stepper's plate.
class Half final : public QAbstractButton {
 public:
  Half(int direction, QWidget* parent) : QAbstractButton(parent), m_direction(direction) {
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setAutoRepeat(true);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    if (isEnabled() && (isDown() || underMouse())) {
      QColor light = palette().color(QPalette::WindowText);
      light.setAlphaF(isDown() ? kPressOpacity : kHoverOpacity);
      drawPlate(&painter, parentWidget()->rect().translated(-pos()), kRadius, light, {}, 0);
    }
    if (!isEnabled()) painter.setOpacity(kDisabledOpacity);
    const QString name =
        m_direction > 0 ? QStringLiteral("chevron-up") : QStringLiteral("chevron-down");
    QRect chevron({0, 0}, QSize(1, 1) * scaledForText(kChevron));
    chevron.moveCenter(rect().center());
    secondaryIcon(name, palette()).paint(&painter, chevron);
  }

 private:
  int m_direction;
};

}  // namespace

PixelStepper::PixelStepper(const QString& title, QWidget* parent)
    : QWidget(parent),
      m_up(makeHalf(tr("Increase %1").arg(title), 1)),
      m_down(makeHalf(tr("Decrease %1").arg(title), -1)) {
  followText(*this, [this] {
    const int width = scaledForText(kWidth), half = scaledForText(kHeight) / 2;
    setFixedSize(width, scaledForText(kHeight));
    m_up->setGeometry(0, 0, width, half);
    m_down->setGeometry(0, half, width, half);
  });
  setToolTip(tr("Pixels"));
}

QAbstractButton* PixelStepper::makeHalf(const QString& name, int direction) {
  auto* const button = new Half(direction, this);
  button->setAccessibleName(name);
  // As it goes down, not when it is let go.
  connect(button, &QAbstractButton::pressed, this, [this, direction] {
    endTextEditing(*window());
    Q_EMIT stepped(direction);
  });
  return button;
}

void PixelStepper::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(kDisabledOpacity);
  drawPlate(&painter, rect(), kRadius, palette().color(QPalette::Active, QPalette::Button),
            palette().color(QPalette::Active, QPalette::Mid), 1);
}

}  // namespace vantrel
