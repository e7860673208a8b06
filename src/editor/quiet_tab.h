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
/// Of the buttons that scroll, in points.
inline constexpr int kScrollButton = 24;
/// Of what closes it, in points.
inline constexpr int kCloseSide = 16;

void drawShape(const QStyleOptionTab& tab, QPainter& painter);
void drawLabel(const QStyleOptionTab& tab, const QStyle& style, QPainter& painter);
void drawCloseButton(const QStyleOption& button, QPainter& painter);
/// In the middle where the text fits there beside a close button, or else as wide as can be: then
/// it begins at the left.
[[nodiscard]] QRect textRect(const QStyleOptionTab& tab);
[[nodiscard]] QRect closeRect(const QRect& tab);

}  // namespace vantrel::QuietTab
