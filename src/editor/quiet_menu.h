#pragma once

class QPainter;
class QSize;
class QStyle;
class QStyleOption;
class QStyleOptionMenuItem;
class QWidget;

namespace vantrel::QuietMenu {

/// The room around the items, in points.
inline constexpr int kMargin = 4;

void drawPanel(const QStyleOption& option, QPainter& painter);
void drawFrame(const QStyleOption& option, QPainter& painter);
/// What is highlighted gets a rounded plate; the rest of an item is as `base` draws it.
void drawItem(const QStyleOptionMenuItem& option, QPainter& painter, const QStyle& base,
              const QWidget* menu);
/// Of an item or a divider; `size` is what it would have without.
[[nodiscard]] QSize itemSize(const QStyleOption& option, const QSize& size);

}  // namespace vantrel::QuietMenu
