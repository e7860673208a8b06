#pragma once

/// How the program looks on a desktop that brings no style of its own: flat areas, quiet colours,
/// dark or light. On any other desktop its style stands.
namespace vantrel::ApplicationLook {

/// Installs the style and the fonts unless the desktop has a style, and follows the desktop's wish
/// for dark or light windows from then on. Needs the QApplication.
void install();

/// Gives all windows their icon. It takes its time, and no window needs it to be painted.
void installIcon();

}  // namespace vantrel::ApplicationLook
