#include "export/unique_name.h"

#include <QUuid>

namespace vantrel {

std::string uniqueName() {
  return "Vantrel-" + uniqueId();
}

std::string uniqueId() {
  return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

}  // namespace vantrel
