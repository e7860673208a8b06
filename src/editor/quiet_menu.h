#pragma once

#include <QSize>

class QPainter;
class QStyle;
class QStyleOption;
class QStyleOptionMenuItem;

namespace vantrel::QuietMenu {

/// In points: the room around the items, the least height of an item, and that of a divider.
inline constexpr int kMargin = 4, kItemHeight = 26, kDividerHeight = 9;

void drawPanel(const QStyleOption& option, QPainter& painter);
void drawFrame(const QStyleOption& option, QPainter& painter);
/// Text and key; a check only where items can have one. What is highlighted gets a rounded plate.
void drawItem(const QStyleOptionMenuItem& option, QPainter& painter, const QStyle& style);
/// `contents` is the size of the text without its key.
[[nodiscard]] QSize itemSize(const QStyleOptionMenuItem& item, const QSize& contents);

}  // namespace vantrel::QuietMenu
