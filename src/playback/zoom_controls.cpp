#include "playback/zoom_controls.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <cmath>

#include "controls/number_slider.h"
#include "controls/symbol_icon.h"
#include "controls/tabular_digits.h"
#include "controls/text_scale.h"
#include "platform/desktop/key_names.h"

namespace vantrel {
namespace {

// In points.
constexpr int kOuterSpacing = 12, kInnerSpacing = 6;
constexpr int kStepSize = 24, kStepSymbolSize = 16;
constexpr int kSliderWidth = 160, kPercentageWidth = 64, kLeastFitWidth = 48;
/// Steps of the slider for a zoom of 1, and those of an arrow key and of a page.
constexpr int kTicks = 1000;
constexpr int kArrowTicks = kTicks / 100;
constexpr int kPageTicks = kTicks / 2;

int ticks(double zoom) {
  return static_cast<int>(std::lround(zoom * kTicks));
}

/// Assistive tools are told hundredths.
QString inWords(double hundredths) {
  return ZoomControls::percentage(hundredths / 100);
}

}  // namespace

ZoomControls::ZoomControls(double least, double most, QWidget* parent)
    : QWidget(parent),
      m_least(least),
      m_most(most),
      m_zoomOut(stepButton(tr("Zoom out"), false)),
      m_slider(new NumberSlider(kTicks / 100.0, inWords, this)),
      m_zoomIn(stepButton(tr("Zoom in"), true)),
      m_percentage(new QToolButton(this)),
      m_fit(new QPushButton(tr("Fit"), this)) {
  m_slider->setRange(ticks(least), ticks(most));
  m_slider->setSingleStep(kArrowTicks);
  m_slider->setPageStep(kPageTicks);
  m_slider->setFixedWidth(kSliderWidth);
  m_slider->setAccessibleName(tr("Canvas zoom"));
  m_slider->setToolTip(tr("Adjust canvas zoom"));
  m_percentage->setAutoRaise(true);
  m_percentage->setFont(withTabularDigits(m_percentage->font()));
  followText(*m_percentage,
             [this] { m_percentage->setFixedWidth(scaledForText(kPercentageWidth)); });
  m_percentage->setToolTip(tr("Actual size (%1)").arg(keyText(QKeySequence(Qt::CTRL | Qt::Key_1))));
  m_fit->setMinimumWidth(kLeastFitWidth);
  m_fit->setToolTip(tr("Fit to window (%1)").arg(keyText(QKeySequence(Qt::CTRL | Qt::Key_0))));

  auto* const inner = new QHBoxLayout;
  inner->setSpacing(kInnerSpacing);
  inner->addWidget(m_zoomOut);
  inner->addWidget(m_slider);
  inner->addWidget(m_zoomIn);
  auto* const outer = new QHBoxLayout(this);
  outer->setContentsMargins({});
  outer->setSpacing(kOuterSpacing);
  outer->addLayout(inner);
  outer->addWidget(m_percentage);
  outer->addWidget(m_fit);

  connect(m_slider, &QSlider::valueChanged, this,
          [this](int value) { Q_EMIT zoomChosen(static_cast<double>(value) / kTicks); });
  connect(m_percentage, &QToolButton::clicked, this, &ZoomControls::actualSizeRequested);
  connect(m_fit, &QPushButton::clicked, this, &ZoomControls::fitRequested);
  showSymbols();
  setZoom(1);
}

QToolButton* ZoomControls::stepButton(const QString& text, bool increasing) {
  auto* const button = new QToolButton(this);
  button->setFixedSize(kStepSize, kStepSize);
  button->setIconSize({kStepSymbolSize, kStepSymbolSize});
  button->setAccessibleName(text);
  button->setToolTip(text);
  connect(button, &QToolButton::clicked, this,
          [this, increasing] { Q_EMIT stepRequested(increasing); });
  return button;
}

QString ZoomControls::percentage(double zoom) {
  return QString::number(std::llround(zoom * 100)) + QLatin1Char('%');
}

void ZoomControls::setZoom(double zoom) {
  const QSignalBlocker quiet(m_slider);
  m_slider->setValue(ticks(zoom));
  m_percentage->setText(percentage(zoom));
  m_zoomOut->setEnabled(zoom > m_least);
  m_zoomIn->setEnabled(zoom < m_most);
}

void ZoomControls::showSymbols() {
  m_zoomOut->setIcon(symbolIcon(QStringLiteral("minus"), palette()));
  m_zoomIn->setIcon(symbolIcon(QStringLiteral("plus"), palette()));
}

void ZoomControls::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) showSymbols();
}

}  // namespace vantrel
