#pragma once

#include <QEvent>

#include "controls/crop_panel.h"

namespace vantrel {

/// A floating panel that belongs to a button, its anchor, and stands above it in the same window.
/// It is open as long as it exists: it goes with a click beside it, with Escape, and with its
/// anchor. While the anchor is not seen, neither is it. What lies beneath, unlike a picture, would
/// be in the way of reading, so that hardly anything of it shines through. Main thread.
class Popover final : public CropPanel {
  Q_OBJECT

 public:
  /// In points.
  static constexpr int kContentPadding = 16;

  /// Takes the content.
  Popover(QWidget& anchor, QWidget* content);

  void dismiss();

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool takesEscape(QEvent* event);
  void closeUnlessIn(const QPoint& global);
  void follow(QEvent::Type type);
  void place();

  QWidget& m_anchor;
};

}  // namespace vantrel
