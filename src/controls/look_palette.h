#pragma once

#include <QPalette>

namespace vantrel {

/// Of the ring around what has the keyboard, in points.
inline constexpr double kFocusWidth = 2;
/// Of what is drawn of a control that cannot be used.
inline constexpr double kDisabledOpacity = 0.45;

/// The program's own colours, dark or light: fields are Base, buttons Button, borders Mid, lines
/// between areas Midlight, bars AlternateBase, tracks of sliders Dark, secondary text
/// PlaceholderText, focus and selection Highlight.
[[nodiscard]] QPalette lookPalette(bool dark);

/// The same over a floating panel: secondary text is read there whatever picture lies beneath.
[[nodiscard]] QPalette panelPalette(bool dark);

/// The same in the inspector, which has a shade of its own.
[[nodiscard]] QPalette inspectorPalette(bool dark);

/// The edge by which a field, a colour well or a knob is told from what it lies on: 3:1 or more
/// against the window, its bars and the inspector, and against Base. It is mixed of the palette's
/// own colours, so that this holds in other styles as well.
[[nodiscard]] QColor outlineColor(const QPalette& palette);

/// Of segments, one of which is chosen: its plate has an edge of 3:1 or more against the track.
struct SegmentColors {
  QColor track, text, plate, plateEdge, plateText;
};
[[nodiscard]] SegmentColors segmentColors(const QPalette& palette);

/// What a button shows of the pointer.
enum class Touch { none, hover, press };
/// Of a button's plate, which lightens and darkens; its text stays readable.
[[nodiscard]] QColor buttonFill(const QPalette& palette, Touch touch);

/// Of the handle of a scroll bar over whatever picture: its edge is 3:1 or more against the rest.
struct HandleColors {
  QColor fill, edge;
};
[[nodiscard]] HandleColors scrollHandleColors(const QPalette& palette, bool isHeld);

/// Of a floating panel, translucent.
[[nodiscard]] QColor panelFill(bool dark);

}  // namespace vantrel
