#pragma once

#include <QPixmap>
#include <QWidget>

namespace vantrel {

/// What a floating panel looks like: a translucent rounded body with a hairline around it, and a
/// soft shadow that reaches beyond it. It takes no part in input, and lies on whole device pixels
/// wherever it stands. Main thread.
class PanelBackdrop final : public QWidget {
  Q_OBJECT

 public:
  /// Of the body, in points.
  static constexpr int kCornerRadius = 12;

  explicit PanelBackdrop(QWidget* parent);

  /// Where the body is to lie, in points of the parent.
  void setBody(const QRect& body);
  /// From 0 to 1.
  void setOpacity(double opacity);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double m_opacity = 1;
  /// Shared by all panels of one look, for as long as one of them shows it.
  QPixmap m_picture;
};

}  // namespace vantrel
