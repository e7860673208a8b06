#include "controls/spoken_slider.h"

#include <QAccessibleWidget>

namespace vantrel {
namespace {

class AccessibleSlider final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit AccessibleSlider(SpokenSlider& slider)
      : QAccessibleWidget(&slider, QAccessible::Slider), m_slider(slider) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? m_slider.valueText() : QAccessibleWidget::text(kind);
  }
  QVariant currentValue() const override { return m_slider.number(); }
  void setCurrentValue(const QVariant& value) override { m_slider.choose(value.toDouble()); }
  QVariant maximumValue() const override { return m_slider.span().most; }
  QVariant minimumValue() const override { return m_slider.span().least; }
  QVariant minimumStepSize() const override { return m_slider.span().step; }

 private:
  SpokenSlider& m_slider;
};

/// Asked for each class of an object, down to its bases.
QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
  if (className != QLatin1String(SpokenSlider::staticMetaObject.className())) return nullptr;
  auto* const slider = qobject_cast<SpokenSlider*>(object);
  return slider ? new AccessibleSlider(*slider) : nullptr;
}

}  // namespace

SpokenSlider::SpokenSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
  [[maybe_unused]] static const bool installed = [] {
    QAccessible::installFactory(makeInterface);
    return true;
  }();
}

}  // namespace vantrel
