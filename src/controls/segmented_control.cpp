#include "controls/segmented_control.h"

#include <QAccessibleWidget>
#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>
#include <QSignalBlocker>

#include "controls/look_palette.h"
#include "controls/plate.h"
#include "controls/text_scale.h"

namespace vantrel {
namespace {

// Points.
constexpr int kTextSize = 12;
constexpr int kInset = 2;
constexpr int kSegmentHeight = 20, kSegmentPadding = 11;
constexpr double kRadius = 7, kSegmentRadius = 5;

constexpr float kHoverOpacity = 0.06F;
constexpr int kShadowDarker = 115;

class Segment final : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;

  [[nodiscard]] QSize sizeHint() const override {
    return {fontMetrics().horizontalAdvance(text()) + 2 * kSegmentPadding,
            scaledForText(kSegmentHeight)};
  }
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  [[nodiscard]] bool hitButton(const QPoint& point) const override {
    return rect().contains(point);
  }
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const auto color = [this](QPalette::ColorRole role) {
      return palette().color(QPalette::Active, role);
    };
    if (!parentWidget()->isEnabled()) painter.setOpacity(kDisabledOpacity);
    if (testAttribute(Qt::WA_ForceDisabled))
      painter.setOpacity(painter.opacity() * kDisabledOpacity);
    if (isEnabled() && underMouse() && !isChecked()) {
      QColor hover = color(QPalette::WindowText);
      hover.setAlphaF(kHoverOpacity);
      drawPlate(&painter, rect(), kSegmentRadius, hover, {}, 0);
    }
    const SegmentColors colors = segmentColors(palette());
    painter.setPen(isChecked() ? colors.plateText : colors.text);
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
      drawPlate(&painter, rect(), kSegmentRadius, Qt::transparent, color(QPalette::Highlight),
                kFocusWidth);
    }
  }
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
  if (className != QLatin1String(SegmentedControl::staticMetaObject.className())) return nullptr;
  auto* const control = qobject_cast<SegmentedControl*>(object);
  return control ? new QAccessibleWidget(control, QAccessible::Grouping) : nullptr;
}

}  // namespace

SegmentedControl::SegmentedControl(const QString& name, const QStringList& titles, QWidget* parent)
    : QWidget(parent) {
  [[maybe_unused]] static const bool installed = [] {
    QAccessible::installFactory(makeInterface);
    return true;
  }();
  setAccessibleName(name);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  scaleFont(*this, kTextSize);
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(kInset, kInset, kInset, kInset);
  layout->setSpacing(0);
  for (const QString& title : titles) {
    auto* const segment = new Segment(title, this);
    const int index = static_cast<int>(m_segments.size());
    segment->setFocusPolicy(Qt::ClickFocus);
    connect(segment, &QRadioButton::toggled, this, [this, segment, index](bool isChecked) {
      segment->setFocusPolicy(isChecked ? Qt::StrongFocus : Qt::ClickFocus);
      update();
      if (isChecked) Q_EMIT chosen(index);
    });
    layout->addWidget(segment);
    m_segments << segment;
  }
}

int SegmentedControl::selected() const {
  for (int index = 0; index < m_segments.size(); ++index) {
    if (m_segments[index]->isChecked()) return index;
  }
  return -1;
}

void SegmentedControl::setSelected(int index) {
  const QSignalBlocker quiet(this);
  m_segments.at(index)->setChecked(true);
}

void SegmentedControl::setSegmentEnabled(int index, bool enabled) {
  m_segments.at(index)->setEnabled(enabled);
}

// Disabled, it fades as a whole into what it lies on.
QColor SegmentedControl::faded(const QColor& color) const {
  if (isEnabled()) return color;
  const QColor ground = palette().color(QPalette::Window);
  const auto mixed = [](int top, int bottom) {
    return qRound(top * kDisabledOpacity + bottom * (1 - kDisabledOpacity));
  };
  return {mixed(color.red(), ground.red()), mixed(color.green(), ground.green()),
          mixed(color.blue(), ground.blue())};
}

void SegmentedControl::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const SegmentColors colors = segmentColors(palette());
  const QColor track = faded(colors.track);
  drawPlate(&painter, rect(), kRadius, track, {}, 0);
  if (selected() < 0) return;
  const QRect plate = m_segments[selected()]->geometry();
  drawPlate(&painter, plate.translated(0, 1), kSegmentRadius, track.darker(kShadowDarker), {}, 0);
  drawPlate(&painter, plate, kSegmentRadius, faded(colors.plate), faded(colors.plateEdge), 1);
}

}  // namespace vantrel
