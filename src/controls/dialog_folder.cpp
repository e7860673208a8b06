#include "controls/dialog_folder.h"

#include <QFileInfo>

namespace vantrel::DialogFolder {
namespace {

QString& folder() {
  static QString path;
  return path;
}

}  // namespace

QString last() {
  return QFileInfo(folder()).isDir() ? folder() : QString();
}

void remember(const QString& file) {
  folder() = QFileInfo(file).absolutePath();
}

}  // namespace vantrel::DialogFolder
