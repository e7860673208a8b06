#include "editor/quiet_menu.h"

#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace vantrel::QuietMenu {
namespace {

// Points.
constexpr double kItemRadius = 5;
constexpr int kDividerInset = 8, kDividerHeight = 9;
constexpr int kItemHeight = 26;
/// Keeps a shortcut away from its item's text.
constexpr int kKeyGap = 16;

void drawDivider(const QStyleOption& option, QPainter& painter) {
  QRect line = option.rect.adjusted(kDividerInset, 0, -kDividerInset, 0);
  line.setTop(line.center().y());
  line.setHeight(1);
  painter.fillRect(line, option.palette.color(QPalette::Mid));
}

void drawHighlight(const QStyleOption& option, QPainter& painter) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(option.palette.color(QPalette::Highlight));
  painter.drawRoundedRect(option.rect, kItemRadius, kItemRadius);
  painter.restore();
}

}  // namespace

void drawPanel(const QStyleOption& option, QPainter& painter) {
  painter.fillRect(option.rect, option.palette.color(QPalette::AlternateBase));
}

void drawFrame(const QStyleOption& option, QPainter& painter) {
  painter.save();
  painter.setPen(option.palette.color(QPalette::Mid));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
  painter.restore();
}

void drawItem(const QStyleOptionMenuItem& option, QPainter& painter, const QStyle& base,
              const QWidget* menu) {
  if (option.menuItemType == QStyleOptionMenuItem::Separator && option.text.isEmpty()) {
    drawDivider(option, painter);
    return;
  }
  QStyleOptionMenuItem item = option;
  if (item.state.testFlag(QStyle::State_Selected) && item.state.testFlag(QStyle::State_Enabled)) {
    drawHighlight(item, painter);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
      item.palette.setColor(role, item.palette.color(QPalette::HighlightedText));
  }
  item.state.setFlag(QStyle::State_Selected, false);
  base.drawControl(QStyle::CE_MenuItem, &item, &painter, menu);
}

QSize itemSize(const QStyleOption& option, const QSize& size) {
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
  if (!item) return size;
  if (item->menuItemType == QStyleOptionMenuItem::Separator && item->text.isEmpty()) {
    return {size.width(), kDividerHeight};
  }
  const bool hasKey = item->text.contains(u'\t');
  return {size.width() + (hasKey ? kKeyGap : 0), std::max(size.height(), kItemHeight)};
}

}  // namespace vantrel::QuietMenu
