#pragma once

#include <QRect>

class QPainter;
class QStyle;
class QStyleOption;
class QStyleOptionTab;

/// Tabs as flat plates: the current one is Window with a Midlight border, the others have only
/// their text, in secondary colour.
namespace vantrel::QuietTab {

/// Of a tab with the room around it, in points.
inline constexpr int kHeight = 31;
/// Of what closes it, in points.
inline constexpr int kCloseSide = 16;

void drawShape(const QStyleOptionTab& tab, QPainter& painter);
void drawLabel(const QStyleOptionTab& tab, const QStyle& style, QPainter& painter);
void drawCloseButton(const QStyleOption& button, QPainter& painter);
[[nodiscard]] QRect textRect(const QRect& tab);
[[nodiscard]] QRect closeRect(const QRect& tab);

}  // namespace vantrel::QuietTab
