#include "platform/movie/picture_orientation.h"

#include <cmath>
#include <cstdlib>

namespace vantrel {
namespace {

/// How far a matrix element or a shift may lie from a whole number, for rounding in its making.
constexpr double kTolerance = 1e-3;
/// More than any decoder gives.
constexpr double kLargestSize = 1 << 20;

std::optional<int> wholeNumber(double value) {
  const double rounded = std::round(value);
  if (!(std::abs(value - rounded) <= kTolerance) || std::abs(rounded) > kLargestSize) return {};
  return static_cast<int>(rounded);
}

struct Span {
  int start = 0, length = 0;
};

/// The source coordinates s for which 0 ≤ sign · s + shift ≤ length.
Span preimage(int sign, int shift, int length) {
  return {sign > 0 ? -shift : shift - length, length};
}

bool isWithin(Span span, double length) {
  return span.start >= 0 && span.start + span.length <= length;
}

}  // namespace

std::optional<SourceRegion> sourceRegion(const VideoOutputSettings& settings,
                                         PictureSize naturalSize) {
  const AffineTransform& transform = settings.transform;
  const auto a = wholeNumber(transform.a), b = wholeNumber(transform.b);
  const auto c = wholeNumber(transform.c), d = wholeNumber(transform.d);
  const auto tx = wholeNumber(transform.tx), ty = wholeNumber(transform.ty);
  if (!a || !b || !c || !d || !tx || !ty) return {};
  const auto isUsable = [](int size) { return size >= 2 && size % 2 == 0 && size < kLargestSize; };
  if (!isUsable(settings.width) || !isUsable(settings.height)) return {};

  const bool transposes = *a == 0;
  const int alongX = transposes ? *b : *a, alongY = transposes ? *c : *d;
  const bool restIsZero = transposes ? *d == 0 : *b == 0 && *c == 0;
  if (std::abs(alongX) != 1 || std::abs(alongY) != 1 || !restIsZero) return {};

  const Span x =
      transposes ? preimage(alongX, *ty, settings.height) : preimage(alongX, *tx, settings.width);
  const Span y =
      transposes ? preimage(alongY, *tx, settings.width) : preimage(alongY, *ty, settings.height);
  if (!isWithin(x, naturalSize.width) || !isWithin(y, naturalSize.height)) return {};
  return SourceRegion{x.start, y.start, x.length, y.length, {alongX < 0, alongY < 0, transposes}};
}

}  // namespace vantrel
