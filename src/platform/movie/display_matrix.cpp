#include "platform/movie/display_matrix.h"

#include <cmath>

namespace vantrel {
namespace {

constexpr double kOne = 1 << 16;

}  // namespace

AffineTransform nearestQuarterTurn(const DisplayMatrix& matrix) {
  const double a = matrix[0] / kOne, b = matrix[1] / kOne;
  const double c = matrix[3] / kOne, d = matrix[4] / kOne;
  AffineTransform result;
  result.tx = matrix[6] / kOne;
  result.ty = matrix[7] / kOne;
  const double determinant = a * d - b * c;
  if (determinant == 0) return result;
  // Of the orientations with the same handedness the one whose axes agree best with the matrix's,
  // each axis counted by its direction alone.
  const double xLength = std::hypot(a, b), yLength = std::hypot(c, d);
  const double hand = determinant > 0 ? 1 : -1;
  const double along = a / xLength + hand * d / yLength;
  const double across = b / xLength - hand * c / yLength;
  if (std::abs(along) >= std::abs(across)) {
    result.a = along > 0 ? 1 : -1;
    result.d = hand * result.a;
  } else {
    result.b = across > 0 ? 1 : -1;
    result.c = -hand * result.b;
    result.a = result.d = 0;
  }
  return result;
}

}  // namespace vantrel
