#pragma once

#include <QFrame>

namespace vantrel {

/// What floats over the canvas: a translucent rounded panel in the palette's colours with a
/// hairline around it and a soft shadow. Its layout keeps the padding free.
class CropPanel : public QFrame {
  Q_OBJECT

 public:
  /// In points.
  static constexpr int kPadding = 12, kCornerRadius = 12;

  explicit CropPanel(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantrel
