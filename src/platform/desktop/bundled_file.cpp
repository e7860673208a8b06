#include "platform/desktop/bundled_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vantrel {
namespace {

// Relative to the folder of the executable. The bundle has not yet been run on macOS.
#ifdef Q_OS_MACOS
constexpr const char* kFolder = "../Resources";
#else
constexpr const char* kFolder = "../share/vantrel";
#endif

}  // namespace

QString bundledPath(const QString& name) {
  const QDir folder(QCoreApplication::applicationDirPath() + u'/' + QLatin1String(kFolder));
  return QDir::cleanPath(folder.filePath(name));
}

std::optional<std::filesystem::path> bundledFile(const QString& name) {
  const QString file = bundledPath(name);
  if (!QFileInfo(file).isFile()) return std::nullopt;
  return QFile::encodeName(file).toStdString();
}

}  // namespace vantrel
