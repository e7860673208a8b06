#pragma once

class QPainter;
class QRect;
class QSize;
class QStyleOption;
class QWidget;

/// Push buttons as plates in Button with a border in Mid, and tool buttons as plates that come with
/// the pointer.
namespace vantrel::QuietButton {

/// The icon of a tool button, and the least side of the button, in points.
inline constexpr int kToolIcon = 18, kTool = 32;

void draw(const QStyleOption& option, QPainter& painter);
void drawTool(const QStyleOption& option, QPainter& painter);
/// Only where the focus came by key.
void drawFocusRing(const QStyleOption& option, const QRect& rect, QPainter& painter);
/// Of a push button around `contents`; `height` is what it would have without. The buttons of a
/// dialog are of one width, whatever stands on them.
[[nodiscard]] QSize sizeAround(const QSize& contents, int height, const QWidget* button);

}  // namespace vantrel::QuietButton
