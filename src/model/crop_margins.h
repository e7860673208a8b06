#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace vantrel {

/// A crop as the source pixels cut away from each side. It holds no source size: operations take
/// the size `in` source pixels (truncated to integers) and the pixel step `multiple`, 1 or 2, of
/// which the output's width and height are multiples. x grows to the right, y downwards, from the
/// top left corner.
///
/// A legal crop has no negative margin and an output of at least `multiple` pixels on the grid,
/// each way. Every operation keeps a crop legal in a source of at least multiple × multiple;
/// assigning fields does not. A size that is not finite or beyond 64 bits, overflow and a
/// `multiple` of 0 are programming errors.
struct CropMargins {
  enum class Edge { left, top, right, bottom };
  static constexpr std::array kEdges{Edge::left, Edge::top, Edge::right, Edge::bottom};

  int64_t left = 0, top = 0, right = 0, bottom = 0;

  /// The widest legal crop: an odd last column or row is cut at the right or the bottom.
  [[nodiscard]] static CropMargins fullImage(const QSizeF& size, int64_t multiple);

  [[nodiscard]] int64_t& operator[](Edge edge);
  [[nodiscard]] int64_t operator[](Edge edge) const;

  /// The crop in source pixels; its size is never negative, its position is as it stands.
  [[nodiscard]] QRectF rectangle(const QSizeF& in) const;

  /// Sets one margin to the nearest legal value and leaves the others; an odd span moves the edge
  /// inward.
  void set(Edge edge, int64_t to, const QSizeF& in, int64_t multiple);

  /// The crop moved right and down by whole pixels, each axis stopping at the source's border.
  [[nodiscard]] CropMargins translated(int64_t horizontal, int64_t vertical) const;

  /// The crop with a wanted output size, rounded down to the grid, around `center` in source pixels
  /// (the present centre if absent); pushed back in where it would leave the source.
  [[nodiscard]] CropMargins resized(int64_t width, int64_t height, const QSizeF& in,
                                    int64_t multiple, std::optional<QPointF> center = {}) const;

  /// The crop with the corner of `edges` dragged by source pixels, scaled about the opposite
  /// corner.
  [[nodiscard]] CropMargins resizedKeepingRatio(double horizontal, double vertical,
                                                const std::vector<Edge>& edges, const QSizeF& in,
                                                int64_t multiple) const;

  friend bool operator==(const CropMargins&, const CropMargins&) = default;
};

}  // namespace vantrel
