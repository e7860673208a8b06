#include "platform/desktop/local_file.h"

#include <QSysInfo>
#include <QUrl>
#include <system_error>

namespace vantrel {
namespace {

bool isThisComputer(const QString& host) {
  return host.isEmpty() || host == QLatin1String("localhost") ||
         host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

bool exists(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::exists(std::filesystem::symlink_status(path, error));
}

}  // namespace

std::optional<std::filesystem::path> localFile(const QUrl& url) {
  if (!url.isLocalFile() || !isThisComputer(url.host())) return {};
  const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
  // The system would read a path as far as there.
  if (path.contains('\0')) return {};
  return path.toStdString();
}

std::filesystem::path fileOfArgument(const std::string& argument) {
  if (exists(argument)) return argument;
  const auto file = localFile(QUrl::fromEncoded(QByteArray::fromStdString(argument)));
  if (file && file->is_absolute()) return *file;
  return argument;
}

}  // namespace vantrel
