#pragma once

#include <QTimer>
#include <QVariantAnimation>

#include "controls/crop_panel.h"
#include "review/controls_visibility.h"

namespace vantrel {

/// A floating panel that fades away while it plays and nothing moves. Out of sight it takes no
/// clicks; assistive tools meet it as ever. Main thread.
class FadingControls : public CropPanel {
  Q_OBJECT

 public:
  static constexpr int kFadeMilliseconds = 200;

  explicit FadingControls(QWidget* parent = nullptr);

  [[nodiscard]] bool areShown() const { return m_visibility.areShown(); }
  void setPlaying(bool playing);
  /// The pointer or a key has moved.
  void stir();
  /// Under the pointer they stay.
  void setUnderPointer(bool isUnderPointer) { m_isUnderPointer = isUnderPointer; }

 Q_SIGNALS:
  void shownChanged(bool shown);

 protected:
  /// Whether the user has hold of something, so that it must not go.
  [[nodiscard]] virtual bool isInUse() const { return m_isUnderPointer; }

 private:
  void rest();
  void follow();
  void fade();

  ControlsVisibility m_visibility;
  bool m_isUnderPointer = false;
  bool m_wereShown = true;
  double m_opacity = 1;
  QTimer m_rest{this};
  QVariantAnimation m_fade;
};

}  // namespace vantrel
