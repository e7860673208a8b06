#include "review/fading_controls.h"

#include <QEasingCurve>

#include "controls/motion.h"

namespace vantrel {

FadingControls::FadingControls(QWidget* parent) : CropPanel(parent) {
  m_rest.setSingleShot(true);
  m_rest.setInterval(ControlsVisibility::kRestMilliseconds);
  m_rest.callOnTimeout(this, &FadingControls::rest);
  m_fade.setEasingCurve(QEasingCurve::OutCubic);
  connect(&m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& opacity) {
    m_opacity = opacity.toDouble();
    setOpacity(m_opacity);
  });
}

void FadingControls::setPlaying(bool playing) {
  m_visibility.setPlaying(playing);
  follow();
}

void FadingControls::stir() {
  m_visibility.stir();
  follow();
}

void FadingControls::rest() {
  m_visibility.rest(isInUse());
  follow();
}

void FadingControls::follow() {
  if (m_visibility.awaitRest()) {
    m_rest.start();
  } else {
    m_rest.stop();
  }
  const bool shown = areShown();
  if (shown == m_wereShown) return;
  m_wereShown = shown;
  setAttribute(Qt::WA_TransparentForMouseEvents, !shown);
  fade();
  Q_EMIT shownChanged(shown);
}

void FadingControls::fade() {
  m_fade.stop();
  m_fade.setDuration(showsMotion(*this) ? kFadeMilliseconds : 0);
  m_fade.setStartValue(m_opacity);
  m_fade.setEndValue(areShown() ? 1.0 : 0.0);
  m_fade.start();
}

}  // namespace vantrel
