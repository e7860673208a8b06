#include "editor/quiet_tab.h"

#include <QPainter>
#include <QStyleOptionTab>

#include "controls/look_palette.h"
#include "controls/plate.h"
#include "controls/symbol_icon.h"

namespace vantrel::QuietTab {
namespace {

// Points.
constexpr double kRadius = 7;
constexpr int kGap = 4;
constexpr int kPadding = 3;
constexpr int kTextMargin = 10;
constexpr int kCloseMargin = 6;
constexpr int kCross = 12;
constexpr double kCloseRadius = 4;

constexpr float kHover = 0.06F;
constexpr float kCloseHover = 0.10F;
constexpr float kClosePress = 0.16F;

/// The plate within a tab.
QRect plateRect(const QRect& tab) {
  return tab.adjusted(0, kPadding, -kGap, -kPadding + 1);
}

QColor tint(const QPalette& palette, float opacity) {
  QColor color = palette.color(QPalette::WindowText);
  color.setAlphaF(opacity);
  return color;
}

}  // namespace

void drawShape(const QStyleOptionTab& tab, QPainter& painter) {
  const bool isCurrent = tab.state.testFlag(QStyle::State_Selected);
  const bool isHovered = tab.state.testFlag(QStyle::State_MouseOver);
  if (!isCurrent && !isHovered) return;
  const bool isFocused = isCurrent && tab.state.testFlag(QStyle::State_HasFocus) &&
                         tab.state.testFlag(QStyle::State_KeyboardFocusChange);
  if (isCurrent) {
    drawPlate(&painter, plateRect(tab.rect), kRadius, tab.palette.color(QPalette::Window),
              tab.palette.color(isFocused ? QPalette::Highlight : QPalette::Midlight),
              isFocused ? kFocusWidth : 1);
  } else {
    drawPlate(&painter, plateRect(tab.rect), kRadius, tint(tab.palette, kHover), {}, 0);
  }
}

void drawLabel(const QStyleOptionTab& tab, const QStyle& style, QPainter& painter) {
  const bool isCurrent = tab.state.testFlag(QStyle::State_Selected);
  style.drawItemText(&painter, textRect(tab),
                     Qt::AlignCenter | Qt::TextSingleLine | Qt::TextHideMnemonic, tab.palette, true,
                     tab.text, isCurrent ? QPalette::WindowText : QPalette::PlaceholderText);
}

void drawCloseButton(const QStyleOption& button, QPainter& painter) {
  const bool isPressed = button.state.testFlag(QStyle::State_Sunken);
  if (isPressed || button.state.testFlag(QStyle::State_MouseOver)) {
    drawPlate(&painter, button.rect, kCloseRadius,
              tint(button.palette, isPressed ? kClosePress : kCloseHover), {}, 0);
  }
  QRect cross(0, 0, kCross, kCross);
  cross.moveCenter(button.rect.center());
  symbolIcon(QStringLiteral("x"), button.palette).paint(&painter, cross);
}

QRect textRect(const QStyleOptionTab& tab) {
  const QRect plate = plateRect(tab.rect);
  const int buttonSide = plate.right() - closeRect(tab.rect).left() + kCloseMargin;
  const QRect middle = plate.adjusted(buttonSide, 0, -buttonSide, 0);
  const QSize text = tab.fontMetrics.size(Qt::TextSingleLine | Qt::TextShowMnemonic, tab.text);
  if (text.width() <= middle.width()) return middle;
  const bool hasButton = tab.state & (QStyle::State_Selected | QStyle::State_MouseOver);
  return plate.adjusted(kTextMargin, 0, hasButton ? -buttonSide : -kTextMargin, 0);
}

QRect closeRect(const QRect& tab) {
  const QRect plate = plateRect(tab);
  QRect button(0, 0, kCloseSide, kCloseSide);
  button.moveCenter(plate.center());
  button.moveRight(plate.right() - kCloseMargin);
  return button;
}

}  // namespace vantrel::QuietTab
