#include "editor/quiet_button.h"

#include <QDialogButtonBox>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>
#include <algorithm>

#include "controls/look_palette.h"
#include "controls/plate.h"

namespace vantrel::QuietButton {
namespace {

// Points.
constexpr double kRadius = 7;
constexpr int kLeastWidth = 48, kLeastDialogWidth = 80, kPadding = 16;

constexpr int kColoredSaturation = 128;
constexpr float kToolHover = 0.08F;
constexpr float kToolPress = 0.14F;

bool isInDialog(const QWidget* button) {
  return button && qobject_cast<const QDialogButtonBox*>(button->parentWidget());
}

}  // namespace

void draw(const QStyleOption& option, QPainter& painter) {
  const QStyle::State state = option.state;
  const QPalette& palette = option.palette;
  const bool enabled = state.testFlag(QStyle::State_Enabled);
  Touch touch = Touch::none;
  if (enabled && state.testFlag(QStyle::State_Sunken)) {
    touch = Touch::press;
  } else if (enabled && state.testFlag(QStyle::State_MouseOver)) {
    touch = Touch::hover;
  }
  const bool focused =
      state.testFlag(QStyle::State_HasFocus) && state.testFlag(QStyle::State_KeyboardFocusChange);
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const bool marked =
      focused || (button && button->features.testFlag(QStyleOptionButton::DefaultButton));
  // White gets no lighter.
  const QColor resting =
      touch == Touch::hover ? outlineColor(palette) : palette.color(QPalette::Mid);
  const QColor edge = marked && enabled ? palette.color(QPalette::Highlight) : resting;
  painter.save();
  if (!enabled) painter.setOpacity(kDisabledOpacity);
  // A coloured button needs no border.
  const bool plain = palette.color(QPalette::Button).saturation() < kColoredSaturation;
  const double border = focused ? kFocusWidth : (plain ? 1 : 0);
  drawPlate(&painter, option.rect, kRadius, buttonFill(palette, touch), edge, border);
  painter.restore();
}

void drawTool(const QStyleOption& option, QPainter& painter) {
  const QStyle::State state = option.state;
  if (!state.testFlag(QStyle::State_Enabled)) return;
  const bool pressed = state.testFlag(QStyle::State_Sunken) || state.testFlag(QStyle::State_On);
  if (!pressed && !state.testFlag(QStyle::State_MouseOver)) return;
  QColor fill = option.palette.color(QPalette::WindowText);
  fill.setAlphaF(pressed ? kToolPress : kToolHover);
  drawPlate(&painter, option.rect, kRadius, fill, {}, 0);
}

void drawFocusRing(const QStyleOption& option, const QRect& rect, QPainter& painter) {
  if (!option.state.testFlag(QStyle::State_KeyboardFocusChange)) return;
  drawPlate(&painter, rect, kRadius, Qt::transparent, option.palette.color(QPalette::Highlight),
            kFocusWidth);
}

QSize sizeAround(const QSize& contents, int height, const QWidget* button) {
  const int least = isInDialog(button) ? kLeastDialogWidth : kLeastWidth;
  return {std::max(contents.width() + 2 * kPadding, least), height};
}

}  // namespace vantrel::QuietButton
