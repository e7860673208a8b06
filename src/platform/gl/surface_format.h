#pragma once

#include <QSurfaceFormat>

namespace vantrel {

/// What every surface of the program is drawn with: OpenGL 3.2, core profile, 8 bits a channel. To
/// be the default before the application object is made, so that contexts can share.
[[nodiscard]] QSurfaceFormat pictureSurfaceFormat();

}  // namespace vantrel
