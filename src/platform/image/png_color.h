#pragma once

#include "platform/image/bitmap.h"
#include "platform/image/png_session.h"

namespace vantrel {

/// What the chunks before the image data say about the meaning of the samples: PLTE with tRNS, and
/// the first that fits of iCCP, sRGB, and gAMA with cHRM. The session has read its header.
[[nodiscard]] BitmapColor pngColor(const PngSession& session, ColorModel model);

}  // namespace vantrel
