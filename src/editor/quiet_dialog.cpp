#include "editor/quiet_dialog.h"

#include <QPainter>
#include <QStyleOption>
#include <algorithm>

#include "controls/look_palette.h"
#include "controls/plate.h"
#include "controls/symbol_icon.h"

namespace vantrel::QuietDialog {
namespace {

// Points.
constexpr int kChevron = 12;
constexpr int kHandleInset = 3, kShortestHandle = 28;
constexpr double kStepRadius = 3;
constexpr int kDividerInset = 5;

constexpr float kHover = 0.08F, kPress = 0.14F;

void drawStep(const QStyleOptionSpinBox& box, const QRect& rect, bool isUp, QPainter& painter) {
  const auto part = isUp ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown;
  const auto step = isUp ? QAbstractSpinBox::StepUpEnabled : QAbstractSpinBox::StepDownEnabled;
  const bool canStep = box.state.testFlag(QStyle::State_Enabled) && box.stepEnabled.testFlag(step);
  if (canStep && box.activeSubControls == part) {
    QColor light = box.palette.color(QPalette::WindowText);
    light.setAlphaF(box.state.testFlag(QStyle::State_Sunken) ? kPress : kHover);
    drawPlate(&painter, rect, kStepRadius, light, {}, 0);
  }
  painter.save();
  if (!canStep) painter.setOpacity(kDisabledOpacity);
  drawChevron(box, rect, isUp, painter);
  painter.restore();
}

}  // namespace

void drawChevron(const QStyleOption& option, const QRect& rect, bool isUp, QPainter& painter) {
  QRect chevron(0, 0, kChevron, kChevron);
  chevron.moveCenter(rect.center());
  secondaryIcon(isUp ? QStringLiteral("chevron-up") : QStringLiteral("chevron-down"),
                option.palette)
      .paint(&painter, chevron);
}

void drawSteps(const QStyleOptionSpinBox& box, const QRect& up, const QRect& down,
               QPainter& painter) {
  drawStep(box, up, true, painter);
  drawStep(box, down, false, painter);
}

void drawHeader(const QStyleOption& option, QPainter& painter) {
  painter.fillRect(option.rect, option.palette.color(QPalette::AlternateBase));
  const QColor line = option.palette.color(QPalette::Mid);
  painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), line);
  const auto* section = qstyleoption_cast<const QStyleOptionHeader*>(&option);
  if (!section || section->position == QStyleOptionHeader::End) return;
  const QRect end(option.direction == Qt::LeftToRight ? option.rect.right() : option.rect.left(),
                  option.rect.top(), 1, option.rect.height());
  painter.fillRect(end.adjusted(0, kDividerInset, 0, -kDividerInset), line);
}

void drawListFrame(const QStyleOption& option, QPainter& painter) {
  drawPlate(&painter, option.rect, 0, Qt::transparent, option.palette.color(QPalette::Mid), 1);
}

void drawScrollBar(const QStyleOptionSlider& bar, QPainter& painter) {
  painter.fillRect(bar.rect, bar.palette.color(QPalette::Base));
  if (!bar.state.testFlag(QStyle::State_Enabled) || bar.maximum == bar.minimum) return;
  const bool isHeld = bar.activeSubControls.testFlag(QStyle::SC_ScrollBarSlider) &&
                      bar.state & (QStyle::State_Sunken | QStyle::State_MouseOver);
  const int across = kHandleInset, along = 1;
  const bool isFlat = bar.orientation == Qt::Horizontal;
  const QRect handle = scrollBarPart(bar, QStyle::SC_ScrollBarSlider)
                           .adjusted(isFlat ? along : across, isFlat ? across : along,
                                     isFlat ? -along : -across, isFlat ? -across : -along);
  drawPlate(&painter, handle, (kScrollBar - 2.0 * kHandleInset) / 2,
            scrollHandleColors(bar.palette, isHeld).fill, {}, 0);
}

QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
  const bool isFlat = bar.orientation == Qt::Horizontal;
  const int whole = isFlat ? bar.rect.width() : bar.rect.height();
  const int range = bar.maximum - bar.minimum;
  const auto shown = static_cast<qint64>(whole) * bar.pageStep / std::max(1, range + bar.pageStep);
  const int length =
      range > 0 ? std::clamp(static_cast<int>(shown), std::min(kShortestHandle, whole), whole)
                : whole;
  const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                    whole - length, bar.upsideDown);
  const auto between = [&](int from, int to) {
    const QRect rect = isFlat ? QRect(from, 0, to - from, bar.rect.height())
                              : QRect(0, from, bar.rect.width(), to - from);
    return QStyle::visualRect(bar.direction, bar.rect, rect.translated(bar.rect.topLeft()));
  };
  switch (part) {
    case QStyle::SC_ScrollBarSlider:
      return between(start, start + length);
    case QStyle::SC_ScrollBarGroove:
      return between(0, whole);
    case QStyle::SC_ScrollBarSubPage:
      return between(0, start);
    case QStyle::SC_ScrollBarAddPage:
      return between(start + length, whole);
    default:
      return {};
  }
}

}  // namespace vantrel::QuietDialog
