#include "controls/crop_reset_button.h"

#include <QEvent>

#include "controls/symbol_icon.h"

namespace vantrel {
namespace {

constexpr int kIcon = 14;

}  // namespace

CropResetButton::CropResetButton(const QString& title, QWidget* parent) : QToolButton(parent) {
  setAccessibleName(title);
  setToolTip(tr("Reset"));
  setAutoRaise(true);
  setFixedSize(kSize, kSize);
  setIconSize({kIcon, kIcon});
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
