#include "controls/crop_dimension_field.h"

#include <QPainter>

#include "controls/motion.h"

namespace vantrel {
namespace {

constexpr double kBorderWidth = 1.5;
constexpr double kCornerRadius = 5;
constexpr QColor kFlashColor(255, 59, 48);

}  // namespace

CropDimensionField::CropDimensionField(EditHistory& history, const QString& label, QWidget* parent)
    : SelectingNumberField(std::make_unique<DimensionEntry>(
                               history, [this](int64_t value) { Q_EMIT valueEdited(value); },
                               [this] { flashValidation(); }),
                           parent),
      m_dimension(static_cast<DimensionEntry*>(entry())) {
  setAccessibleName(tr("Crop %1 in pixels").arg(label.toLower()));
  m_flash.setStartValue(1.0);
  m_flash.setEndValue(0.0);
  m_flash.setDuration(kFlashMilliseconds);
  connect(&m_flash, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

double CropDimensionField::flashOpacity() const {
  if (m_flash.state() != QAbstractAnimation::Running) return 0;
  return showsMotion(*this) ? m_flash.currentValue().toDouble() : 1;
}

void CropDimensionField::setMaximum(int64_t maximum) {
  m_dimension->setMaximum(maximum);
}

void CropDimensionField::flashValidation() {
  m_flash.stop();
  m_flash.start();
}

void CropDimensionField::paintEvent(QPaintEvent* event) {
  SelectingNumberField::paintEvent(event);
  const double opacity = flashOpacity();
  if (opacity <= 0) return;
  QColor color = kFlashColor;
  color.setAlphaF(static_cast<float>(opacity));
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, kBorderWidth));
  constexpr double kInset = kBorderWidth / 2;
  painter.drawRoundedRect(QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset),
                          kCornerRadius - kInset, kCornerRadius - kInset);
}

}  // namespace vantrel
