#pragma once

#include <QPointF>
#include <Qt>
#include <optional>

namespace vantrel {

/// The hand on the canvas: whether the space bar arms it, a button drags it, or a trackpad moves
/// the canvas. Positions are points of the viewport, offsets those of the document.
class CanvasPan final {
 public:
  /// How long after the last precise scroll event the hand opens again, in milliseconds.
  static constexpr int kScrollRestMilliseconds = 180;

  enum class Hand { none, open, closed };

  [[nodiscard]] bool isSpaceHeld() const { return m_isSpaceHeld; }
  /// A pan by mouse is running.
  [[nodiscard]] bool isPanning() const { return m_start.has_value(); }
  /// The cursor all over the canvas; with none, the zone under the pointer decides.
  [[nodiscard]] Hand hand() const;

  void setSpaceHeld(bool held) { m_isSpaceHeld = held; }
  /// Begins a pan by the right or the middle button, or by any with the space bar held; false, with
  /// nothing changed, otherwise.
  bool begin(Qt::MouseButton button, const QPointF& position, const QPointF& scrollOffset);
  /// The offset that keeps the canvas under the hand; absent when no pan is running.
  [[nodiscard]] std::optional<QPointF> drag(const QPointF& position) const;
  /// May come at any time.
  void end() { m_start.reset(); }
  /// Precise scroll events come in, or have stopped.
  void setScrolling(bool scrolling) { m_isScrolling = scrolling; }

 private:
  struct Start {
    QPointF position, scrollOffset;
  };

  bool m_isSpaceHeld = false;
  bool m_isScrolling = false;
  std::optional<Start> m_start;
};

}  // namespace vantrel
