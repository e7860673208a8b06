#include "controls/motion.h"

#include <QStyle>
#include <QWidget>

namespace vantrel {

bool showsMotion(const QWidget& widget) {
  return widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) > 0;
}

}  // namespace vantrel
