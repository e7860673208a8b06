#pragma once

#include <QPalette>

/// How the program looks on a desktop that brings no style of its own: flat areas, quiet colours,
/// dark or light. On any other desktop its style stands.
namespace vantrel::ApplicationLook {

[[nodiscard]] QPalette palette(bool dark);

/// Whether the desktop wishes dark windows, as far as it can be asked.
[[nodiscard]] bool systemPrefersDark();

/// Installs the style, the fonts and the palette of the wish, unless the desktop has a style.
/// Needs the QApplication.
void install();

/// Changes the palette, for when the wish changes.
void setDark(bool dark);

}  // namespace vantrel::ApplicationLook
