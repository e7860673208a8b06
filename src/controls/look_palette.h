#pragma once

#include <QPalette>

namespace vantrel {

/// The program's own colours, dark or light: fields are Base, buttons Button, borders Mid, lines
/// between areas Midlight, bars AlternateBase, tracks of sliders Dark, secondary text
/// PlaceholderText, focus and selection Highlight.
[[nodiscard]] QPalette lookPalette(bool dark);

/// The same over a floating panel: secondary text is read there whatever picture lies beneath.
[[nodiscard]] QPalette panelPalette(bool dark);

/// The same in the inspector, which has a shade of its own.
[[nodiscard]] QPalette inspectorPalette(bool dark);

/// Of a floating panel, translucent.
[[nodiscard]] QColor panelFill(bool dark);

}  // namespace vantrel
