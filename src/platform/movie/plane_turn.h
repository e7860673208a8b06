#pragma once

#include "platform/movie/picture_orientation.h"
#include "platform/movie/plane_view.h"

namespace vantrel {

/// Copies `source` into `target` as `orientation` lays it; `target` has the width and height of
/// `source`, exchanged where the orientation transposes. Any thread.
void turnPlane(const PlaneView& source, const PictureOrientation& orientation, PlaneTarget target);

}  // namespace vantrel
