#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace vantrel {

/// Maps the pixels of a source to the points of a view and back; nobody else multiplies by a zoom.
/// A value. Its scale, in points for each source pixel, is the same in both directions, finite and
/// above 0, whatever the sizes are.
class CanvasProjection {
 public:
  /// No source, at a scale of 1.
  CanvasProjection() = default;
  /// A source of `source` pixels whose top left corner lies at `origin`, in points.
  CanvasProjection(const QSizeF& source, const QPointF& origin, double scale);

  /// Points for each source pixel.
  [[nodiscard]] double scale() const { return m_scale; }
  [[nodiscard]] const QSizeF& sourceSize() const { return m_sourceSize; }
  /// True when the source has no pixel.
  [[nodiscard]] bool isEmpty() const {
    return !(m_sourceSize.width() > 0 && m_sourceSize.height() > 0);
  }
  /// Where the whole source lies in the view.
  [[nodiscard]] QRectF imageFrame() const { return {m_origin, m_sourceSize * m_scale}; }

  [[nodiscard]] QPointF toView(const QPointF& source) const { return m_origin + source * m_scale; }
  [[nodiscard]] QRectF toView(const QRectF& source) const {
    return {toView(source.topLeft()), source.size() * m_scale};
  }
  [[nodiscard]] QPointF toSource(const QPointF& view) const { return (view - m_origin) / m_scale; }

  friend bool operator==(const CanvasProjection&, const CanvasProjection&) = default;

 private:
  QSizeF m_sourceSize{0, 0};
  QPointF m_origin{0, 0};
  double m_scale = 1;
};

}  // namespace vantrel
