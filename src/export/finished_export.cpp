#include "export/finished_export.h"

#include <QFile>
#include <QTextBoundaryFinder>
#include <system_error>

#include "platform/desktop/file_error.h"

namespace vantrel {
namespace {

constexpr QStringView kMark = u"-framed";
/// Of a file name, in bytes, on every usual file system.
constexpr qsizetype kMostNameBytes = 255;

/// The beginning of `text` that is no longer than this as part of a file name; characters that
/// people see as one stay whole.
QString cutToBytes(const QString& text, qsizetype most) {
  QTextBoundaryFinder boundary(QTextBoundaryFinder::Grapheme, text);
  boundary.toEnd();
  while (QFile::encodeName(text.left(boundary.position())).size() > most)
    if (boundary.toPreviousBoundary() < 0) return {};
  return text.left(boundary.position());
}

}  // namespace

QString exportTitle(const std::filesystem::path& sourcePath) {
  return displayName(sourcePath.stem()).append(kMark);
}

QString proposedFileName(const QString& title, const QString& extension) {
  QString ending = u'.' + extension;
  QString beginning = title.endsWith(ending) ? title.chopped(ending.size()) : title;
  if (beginning.endsWith(kMark)) {
    beginning.chop(kMark.size());
    ending.prepend(kMark);
  }
  return cutToBytes(beginning, kMostNameBytes - QFile::encodeName(ending).size()) + ending;
}

int64_t fileSizeOf(const std::filesystem::path& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return error ? 0 : static_cast<int64_t>(size);
}

}  // namespace vantrel
