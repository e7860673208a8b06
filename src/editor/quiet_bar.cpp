#include "editor/quiet_bar.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionMenuItem>
#include <algorithm>

#include "controls/look_palette.h"
#include "controls/plate.h"

namespace vantrel::QuietBar {
namespace {

// Points.
constexpr double kTitleRadius = 5;
constexpr int kTitleHeight = 26, kTitleExtra = 6;

constexpr float kTitleHighlight = 0.08F;

}  // namespace

void drawMenuBar(const QStyleOption& option, QPainter& painter) {
  painter.fillRect(option.rect, option.palette.color(QPalette::AlternateBase));
}

void drawToolBar(const QStyleOption& option, QPainter& painter) {
  drawMenuBar(option, painter);
  QRect line = option.rect;
  line.setTop(line.bottom());
  painter.fillRect(line, option.palette.color(QPalette::Midlight));
}

void drawMenuTitle(const QStyleOptionMenuItem& item, QPainter& painter, const QStyle& style,
                   bool hasKeyboard) {
  drawMenuBar(item, painter);
  if (item.state.testFlag(QStyle::State_Selected)) {
    QColor fill = item.palette.color(QPalette::WindowText);
    fill.setAlphaF(kTitleHighlight);
    drawPlate(&painter, item.rect.adjusted(1, 2, -1, -2), kTitleRadius, fill,
              item.palette.color(QPalette::Highlight), hasKeyboard ? kFocusWidth : 0);
  }
  const int flags =
      Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextDontClip | Qt::TextSingleLine |
      (style.styleHint(QStyle::SH_UnderlineShortcut, &item) ? 0 : Qt::TextHideMnemonic);
  style.drawItemText(&painter, item.rect, flags, item.palette,
                     item.state.testFlag(QStyle::State_Enabled), item.text, QPalette::WindowText);
}

QSize menuTitleSize(const QSize& size) {
  return {size.width() + kTitleExtra, std::max(size.height(), kTitleHeight)};
}

}  // namespace vantrel::QuietBar
