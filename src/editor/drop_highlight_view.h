#pragma once

#include <QFocusFrame>

namespace vantrel {

/// The frame that tells that a file may be dropped. It takes no mouse events, keeps to the size of
/// its parent, and assistive tools do not see it: of a frame around something they are not told.
class DropHighlightView final : public QFocusFrame {
  Q_OBJECT

 public:
  explicit DropHighlightView(QWidget* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantrel
