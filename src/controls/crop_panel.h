#pragma once

#include <QPointer>
#include <QWidget>

#include "controls/panel_backdrop.h"

namespace vantrel {

/// What floats over the canvas: a translucent rounded panel with a hairline around it and a soft
/// shadow, dark or light as its palette is. The widget is the panel's body; a sibling beneath it
/// draws body and shadow, so that what the shadow falls on takes clicks as ever. The panel itself
/// takes left clicks and shows an arrow; its layout keeps the padding free. Main thread.
class CropPanel : public QWidget {
  Q_OBJECT

 public:
  /// In points.
  static constexpr int kPadding = 12;

  explicit CropPanel(QWidget* parent = nullptr);
  ~CropPanel() override;

  /// From 0 to 1, that of the panel with all it holds.
  void setOpacity(double opacity);

 protected:
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void followParent();

  QPointer<PanelBackdrop> m_backdrop;
  double m_opacity = 1;
};

}  // namespace vantrel
