#include "editor/source_file.h"

#include <QFile>

namespace vantrel {

QString displayName(const std::filesystem::path& path) {
  return QFile::decodeName(path.filename().native().c_str());
}

QString exportTitle(const std::filesystem::path& path) {
  return QFile::decodeName(path.stem().native().c_str()) + QStringLiteral("-framed");
}

}  // namespace vantrel
