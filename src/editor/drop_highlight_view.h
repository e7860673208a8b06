#pragma once

#include <QWidget>

namespace vantrel {

/// The frame that tells that a file may be dropped. It takes no mouse events and keeps to the size
/// of its parent.
class DropHighlightView final : public QWidget {
  Q_OBJECT

 public:
  explicit DropHighlightView(QWidget* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantrel
