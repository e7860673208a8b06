#pragma once

#include <QColor>
#include <QRectF>
#include <QSize>
#include <memory>
#include <vector>

namespace vantrel {

/// A rectangle of one colour, in device pixels of the framebuffer, y downwards from its top left
/// corner. Its edges are on whole pixels.
struct ColoredRectangle {
  QRectF rect;
  QColor color;
  friend bool operator==(const ColoredRectangle&, const ColoredRectangle&) = default;
};

/// Fills rectangles with OpenGL, in their order, over what is there. One thread at a time, with the
/// same context current in every call.
class RectanglePainter final {
 public:
  RectanglePainter();
  /// `release` has been called, or the context is gone.
  ~RectanglePainter();
  RectanglePainter(const RectanglePainter&) = delete;
  RectanglePainter& operator=(const RectanglePainter&) = delete;

  /// `opacity`, from 0 to 1, is that of all of them together: below 1, what is beneath shows
  /// through, but none of them through another that hides it. Leaves its own state of the context.
  void draw(const QSize& target, const std::vector<ColoredRectangle>& rectangles, double opacity);
  void release();

 private:
  class Program;
  std::unique_ptr<Program> m_program;
};

}  // namespace vantrel
