#include "controls/window_title.h"

namespace vantrel {

QString windowTitleOf(QString name) {
  return name.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

}  // namespace vantrel
