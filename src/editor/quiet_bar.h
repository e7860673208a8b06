#pragma once

class QPainter;
class QSize;
class QStyle;
class QStyleOption;
class QStyleOptionMenuItem;

/// The bars at the top of a window: plain areas in AlternateBase, the titles of menus on them.
namespace vantrel::QuietBar {

/// Of a tool bar, in points.
inline constexpr int kToolMargin = 8, kToolSpacing = 8;
/// At both ends of a menu bar, in points.
inline constexpr int kMenuMargin = 2;

void drawMenuBar(const QStyleOption& option, QPainter& painter);
/// With a Midlight line at its lower edge.
void drawToolBar(const QStyleOption& option, QPainter& painter);
/// The title of a menu, on a plate while the menu is open, in a ring while the bar has the
/// keyboard.
void drawMenuTitle(const QStyleOptionMenuItem& item, QPainter& painter, const QStyle& style,
                   bool hasKeyboard);
/// Of the title of a menu; `size` is what it needs.
[[nodiscard]] QSize menuTitleSize(const QSize& size);

}  // namespace vantrel::QuietBar
