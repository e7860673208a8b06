#pragma once

class QPainter;
class QStyle;
class QStyleOption;
class QStyleOptionMenuItem;
class QWidget;

namespace vantrel::QuietMenu {

/// In points: the room around the items, the least height of an item, that of a divider, and what
/// keeps a shortcut away from its item's text.
inline constexpr int kMargin = 4, kItemHeight = 26, kDividerHeight = 9, kKeyGap = 16;

void drawPanel(const QStyleOption& option, QPainter& painter);
void drawFrame(const QStyleOption& option, QPainter& painter);
/// What is highlighted gets a rounded plate; the rest of an item is as `base` draws it.
void drawItem(const QStyleOptionMenuItem& option, QPainter& painter, const QStyle& base,
              const QWidget* menu);

}  // namespace vantrel::QuietMenu
