#include "platform/desktop/key_names.h"

namespace vantrel {

QString keyText(const QKeySequence& keys) {
  return keys.toString(QKeySequence::NativeText);
}

QString commandKeyName() {
#ifdef Q_OS_MACOS
  return QStringLiteral("CMD");
#else
  return QStringLiteral("Ctrl");
#endif
}

}  // namespace vantrel
