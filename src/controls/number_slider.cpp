#include "controls/number_slider.h"

#include <QAccessibleWidget>
#include <algorithm>
#include <cmath>
#include <utility>

namespace vantrel {
namespace {

class AccessibleNumberSlider final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit AccessibleNumberSlider(NumberSlider& slider)
      : QAccessibleWidget(&slider, QAccessible::Slider), m_slider(slider) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? m_slider.valueText() : QAccessibleWidget::text(kind);
  }
  QVariant currentValue() const override { return m_slider.number(m_slider.value()); }
  void setCurrentValue(const QVariant& value) override { m_slider.choose(value.toDouble()); }
  QVariant maximumValue() const override { return m_slider.number(m_slider.maximum()); }
  QVariant minimumValue() const override { return m_slider.number(m_slider.minimum()); }
  QVariant minimumStepSize() const override { return m_slider.number(m_slider.singleStep()); }

 private:
  NumberSlider& m_slider;
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
  if (className != QLatin1String(NumberSlider::staticMetaObject.className())) return nullptr;
  auto* const slider = qobject_cast<NumberSlider*>(object);
  return slider ? new AccessibleNumberSlider(*slider) : nullptr;
}

}  // namespace

NumberSlider::NumberSlider(double ticks, InWords inWords, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), m_ticks(ticks), m_inWords(std::move(inWords)) {
  [[maybe_unused]] static const bool installed = [] {
    QAccessible::installFactory(makeInterface);
    return true;
  }();
}

void NumberSlider::choose(double number) {
  if (!isEnabled() || std::isnan(number)) return;
  const double legal = std::clamp<double>(number * m_ticks, minimum(), maximum());
  setValue(static_cast<int>(std::lround(legal)));
}

}  // namespace vantrel
