#pragma once

#include <array>
#include <cstdint>

#include "platform/movie/movie.h"

namespace vantrel {

/// A display matrix as QuickTime files and FFmpeg's side data have it: a, b, u, c, d, v, x, y, w in
/// rows of three, 16.16 fixed point but for u, v and w, 2.30 (QuickTime File Format, "Matrices").
using DisplayMatrix = std::array<int32_t, 9>;

/// The quarter turn or mirror of one that is nearest to what `matrix` does to a picture, with the
/// matrix's own shift. A matrix that flattens the picture turns nothing.
[[nodiscard]] AffineTransform nearestQuarterTurn(const DisplayMatrix& matrix);

}  // namespace vantrel
