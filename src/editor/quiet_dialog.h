#pragma once

#include <QRect>
#include <QStyle>

class QPainter;
class QStyleOption;
class QStyleOptionHeader;
class QStyleOptionSlider;
class QStyleOptionSpinBox;

/// What only the toolkit's own dialogs show, those of files and colours: lists with their headers
/// and scroll bars, boxes to choose from and to count in.
namespace vantrel::QuietDialog {

/// Across a scroll bar, in points.
inline constexpr int kScrollBar = 12;
/// Of the icons in lists, in points.
inline constexpr int kListIcon = 16;

/// A chevron in the middle of `rect`, up or down.
void drawChevron(const QStyleOption& option, const QRect& rect, bool isUp, QPainter& painter);
/// Only the steps: `up` and `down` are their places.
void drawSteps(const QStyleOptionSpinBox& box, const QRect& up, const QRect& down,
               QPainter& painter);
void drawHeader(const QStyleOption& option, QPainter& painter);
void drawListFrame(const QStyleOption& option, QPainter& painter);
void drawScrollBar(const QStyleOptionSlider& bar, QPainter& painter);
/// A scroll bar has no buttons at its ends.
[[nodiscard]] QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part);

}  // namespace vantrel::QuietDialog
