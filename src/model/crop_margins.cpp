#include "model/crop_margins.h"

#include <QtGlobal>
#include <algorithm>
#include <cmath>

namespace vantrel {
namespace {

// Overflow means margins that no operation makes; going on would only hide the mistake.
int64_t sum(int64_t a, int64_t b) {
  int64_t result = 0;
  if (__builtin_add_overflow(a, b, &result)) qFatal("crop margins overflow 64 bits");
  return result;
}

int64_t difference(int64_t a, int64_t b) {
  int64_t result = 0;
  if (__builtin_sub_overflow(a, b, &result)) qFatal("crop margins overflow 64 bits");
  return result;
}

int64_t truncated(double value) {
  constexpr double kLimit = 0x1p63;
  // Written so that it fails for a value that is not a number, too.
  if (!(value >= -kLimit && value < kLimit)) {
    qFatal("a crop needs sizes and positions within 64 bits, not %g", value);
  }
  return static_cast<int64_t>(value);
}

void requireStep(int64_t multiple) {
  if (multiple < 1) qFatal("a crop needs a pixel step of at least 1");
}

int64_t roundedDown(int64_t value, int64_t multiple) {
  return value / multiple * multiple;
}

CropMargins::Edge opposite(CropMargins::Edge edge) {
  using Edge = CropMargins::Edge;
  switch (edge) {
    case Edge::left:
      return Edge::right;
    case Edge::top:
      return Edge::bottom;
    case Edge::right:
      return Edge::left;
    case Edge::bottom:
      return Edge::top;
  }
  Q_UNREACHABLE();
}

/// Width for the left and right edges, height for the others.
int64_t extentAcross(CropMargins::Edge edge, const QSizeF& in) {
  const bool horizontal = edge == CropMargins::Edge::left || edge == CropMargins::Edge::right;
  return truncated(horizontal ? in.width() : in.height());
}

/// Where one axis of a crop begins and how long it is.
struct Span {
  int64_t start = 0, length = 0;
};

/// The span of a wanted length around `center`, pushed back into 0…extent.
Span centred(int64_t length, double center, int64_t extent, int64_t multiple) {
  if (!std::isfinite(center)) qFatal("a crop cannot be centred at %g", center);
  const int64_t longest = std::max(multiple, roundedDown(extent, multiple));
  const int64_t target = std::clamp(roundedDown(length, multiple), multiple, longest);
  const int64_t last = std::max<int64_t>(0, difference(extent, target));
  const double start = std::round(center - static_cast<double>(target) / 2);
  if (start <= 0) return {0, target};
  // Compared as a float, so that a far centre never reaches the conversion.
  if (start >= static_cast<double>(last)) return {last, target};
  return {static_cast<int64_t>(start), target};
}

/// One axis of a crop that is scaled about the edge opposite to the dragged one.
struct ScaledAxis {
  bool towardsOrigin = false;
  double length = 0, anchor = 0, room = 0, wanted = 0;

  ScaledAxis(bool dragsLowEdge, double low, double size, double extent, double delta)
      : towardsOrigin(dragsLowEdge),
        length(size),
        anchor(dragsLowEdge ? low + size : low),
        room(dragsLowEdge ? anchor : extent - anchor),
        wanted(dragsLowEdge ? size - delta : size + delta) {}

  [[nodiscard]] Span scaled(double scale, int64_t multiple) const {
    const int64_t limit = roundedDown(truncated(room), multiple);
    const double steps = std::round(length * scale / static_cast<double>(multiple));
    const int64_t mostSteps = limit / multiple;
    const int64_t size = steps >= static_cast<double>(mostSteps)
                             ? limit
                             : std::min(limit, std::max(multiple, truncated(steps) * multiple));
    const int64_t fixed = truncated(anchor);
    return {towardsOrigin ? difference(fixed, size) : fixed, size};
  }
};

/// The scale nearest to the pointer's wish, projected onto the diagonal; absent if none is legal.
std::optional<double> commonScale(const ScaledAxis& x, const ScaledAxis& y, int64_t multiple) {
  const auto step = static_cast<double>(multiple);
  const double smallest = std::max(step / x.length, step / y.length);
  const double largest = std::min(x.room / x.length, y.room / y.length);
  const double wish =
      (x.wanted * x.length + y.wanted * y.length) / (x.length * x.length + y.length * y.length);
  if (!(smallest <= largest) || std::isnan(wish)) return std::nullopt;
  return std::clamp(wish, smallest, largest);
}

bool contains(const std::vector<CropMargins::Edge>& edges, CropMargins::Edge edge) {
  return std::find(edges.begin(), edges.end(), edge) != edges.end();
}

}  // namespace

CropMargins CropMargins::fullImage(const QSizeF& size, int64_t multiple) {
  requireStep(multiple);
  return {0, 0, truncated(size.width()) % multiple, truncated(size.height()) % multiple};
}

int64_t& CropMargins::operator[](Edge edge) {
  switch (edge) {
    case Edge::left:
      return left;
    case Edge::top:
      return top;
    case Edge::right:
      return right;
    case Edge::bottom:
      return bottom;
  }
  Q_UNREACHABLE();
}

int64_t CropMargins::operator[](Edge edge) const {
  CropMargins copy = *this;
  return copy[edge];
}

QRectF CropMargins::rectangle(const QSizeF& in) const {
  const int64_t width = difference(difference(truncated(in.width()), left), right);
  const int64_t height = difference(difference(truncated(in.height()), top), bottom);
  return {static_cast<double>(left), static_cast<double>(top),
          static_cast<double>(std::max<int64_t>(0, width)),
          static_cast<double>(std::max<int64_t>(0, height))};
}

void CropMargins::set(Edge edge, int64_t to, const QSizeF& in, int64_t multiple) {
  requireStep(multiple);
  const int64_t reach = difference(extentAcross(edge, in), (*this)[opposite(edge)]);
  const int64_t upper = std::max<int64_t>(0, difference(reach, multiple));
  int64_t margin = std::clamp<int64_t>(to, 0, upper);
  if (difference(reach, margin) % multiple != 0) {
    margin = margin < upper ? margin + 1 : std::max<int64_t>(0, margin - 1);
  }
  (*this)[edge] = margin;
}

CropMargins CropMargins::translated(int64_t horizontal, int64_t vertical) const {
  const int64_t dx = std::min(right, std::max(difference(0, left), horizontal));
  const int64_t dy = std::min(bottom, std::max(difference(0, top), vertical));
  return {sum(left, dx), sum(top, dy), difference(right, dx), difference(bottom, dy)};
}

CropMargins CropMargins::resized(int64_t width, int64_t height, const QSizeF& in, int64_t multiple,
                                 std::optional<QPointF> center) const {
  requireStep(multiple);
  const QPointF middle = center ? *center : rectangle(in).center();
  const int64_t sourceWidth = truncated(in.width());
  const int64_t sourceHeight = truncated(in.height());
  const Span x = centred(width, middle.x(), sourceWidth, multiple);
  const Span y = centred(height, middle.y(), sourceHeight, multiple);
  return {x.start, y.start, std::max<int64_t>(0, sourceWidth - x.start - x.length),
          std::max<int64_t>(0, sourceHeight - y.start - y.length)};
}

CropMargins CropMargins::resizedKeepingRatio(double horizontal, double vertical,
                                             const std::vector<Edge>& edges, const QSizeF& in,
                                             int64_t multiple) const {
  requireStep(multiple);
  const QRectF r = rectangle(in);
  if (r.width() <= 0 || r.height() <= 0) return *this;
  const ScaledAxis x(contains(edges, Edge::left), r.x(), r.width(), in.width(), horizontal);
  const ScaledAxis y(contains(edges, Edge::top), r.y(), r.height(), in.height(), vertical);
  const std::optional<double> scale = commonScale(x, y, multiple);
  if (!scale) return *this;
  const Span columns = x.scaled(*scale, multiple);
  const Span rows = y.scaled(*scale, multiple);
  return {columns.start, rows.start,
          difference(difference(truncated(in.width()), columns.start), columns.length),
          difference(difference(truncated(in.height()), rows.start), rows.length)};
}

}  // namespace vantrel
