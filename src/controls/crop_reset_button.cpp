#include "controls/crop_reset_button.h"

#include <QEvent>

#include "controls/symbol_icon.h"
#include "controls/text_scale.h"

namespace vantrel {
namespace {

// Points, of the design.
constexpr int kSize = 24, kIcon = 14, kOverhang = 4;

}  // namespace

int CropResetButton::overhang() {
  return scaledForText(kOverhang);
}

CropResetButton::CropResetButton(const QString& title, QWidget* parent) : QToolButton(parent) {
  setAccessibleName(title);
  setToolTip(tr("Reset"));
  setAutoRaise(true);
  followText(*this, [this] {
    setFixedSize(QSize(1, 1) * scaledForText(kSize));
    setIconSize(QSize(1, 1) * scaledForText(kIcon));
  });
  // A click ends what is being typed, which would else come after it.
  setFocusPolicy(Qt::StrongFocus);
  setIcon(secondaryIcon(QStringLiteral("rotate-ccw"), palette()));
}

void CropResetButton::changeEvent(QEvent* event) {
  QToolButton::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) {
    setIcon(secondaryIcon(QStringLiteral("rotate-ccw"), palette()));
  }
}

}  // namespace vantrel
