#include "platform/desktop/key_names.h"

namespace vantrel {

QString keyText(const QKeySequence& keys) {
  return keys.toString(QKeySequence::NativeText);
}

}  // namespace vantrel
