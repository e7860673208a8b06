#include "platform/desktop/content_type.h"

#include <QFile>
#include <QMimeDatabase>
#include <algorithm>
#include <array>

#include "platform/desktop/file_error.h"
#include "platform/desktop/regular_file.h"

namespace vantrel {
namespace {

/// What the shared database says less exactly than this program needs.
struct Refinement {
  QLatin1String name;
  QLatin1String parent;
  QLatin1String extension;
};

// The database has one type for both, image/heif with the extension "heic".
constexpr QLatin1String kHeic("image/heic");
constexpr QLatin1String kHeif("image/heif");
constexpr std::array kRefinements{
    Refinement{kHeic, kHeif, QLatin1String("heic")},
    Refinement{kHeif, {}, QLatin1String("heif")},
    Refinement{QLatin1String("video/quicktime"), {}, QLatin1String("mov")},
};

const Refinement* refinementOf(const QString& name) {
  const auto found = std::find_if(kRefinements.begin(), kRefinements.end(),
                                  [&](const Refinement& one) { return one.name == name; });
  return found == kRefinements.end() ? nullptr : &*found;
}

QMimeType mimeType(const QString& name) {
  return QMimeDatabase().mimeTypeForName(name);
}

bool isOrInheritsFamily(const QString& name, QLatin1String family) {
  if (name.startsWith(family)) return true;
  const QStringList ancestors = mimeType(name).allAncestors();
  return std::any_of(ancestors.begin(), ancestors.end(),
                     [&](const QString& ancestor) { return ancestor.startsWith(family); });
}

}  // namespace

ContentType::ContentType(const QString& mimeName)
    : m_name(refinementOf(mimeName) ? mimeName : mimeType(mimeName).name()) {}

ContentType ContentType::ofFile(const std::filesystem::path& path) {
  const FileDescriptor descriptor = openRegularFile(path);
  QFile file;
  if (!file.open(descriptor.get(), QIODevice::ReadOnly | QIODevice::Unbuffered)) {
    throw fileError(path, FileAction::Open);
  }
  const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(displayName(path), &file);
  return type.isDefault() ? ContentType() : ContentType(type.name());
}

ContentType ContentType::png() {
  return ContentType(QStringLiteral("image/png"));
}

ContentType ContentType::jpeg() {
  return ContentType(QStringLiteral("image/jpeg"));
}

ContentType ContentType::heic() {
  return ContentType(kHeic);
}

ContentType ContentType::heif() {
  return ContentType(kHeif);
}

ContentType ContentType::tiff() {
  return ContentType(QStringLiteral("image/tiff"));
}

ContentType ContentType::quickTimeMovie() {
  return ContentType(QStringLiteral("video/quicktime"));
}

bool ContentType::conformsTo(const ContentType& other) const {
  if (!isValid() || !other.isValid()) return false;
  if (*this == other) return true;
  const Refinement* refinement = refinementOf(m_name);
  if (refinement && refinement->parent == other.m_name) return true;
  // The database knows a refined name as an alias at most, and would take it for its parent.
  const Refinement* refinedOther = refinementOf(other.m_name);
  if (refinedOther && !refinedOther->parent.isEmpty()) return false;
  return mimeType(m_name).inherits(other.m_name);
}

bool ContentType::isImage() const {
  return isOrInheritsFamily(m_name, QLatin1String("image/"));
}

bool ContentType::isMovie() const {
  return isOrInheritsFamily(m_name, QLatin1String("video/"));
}

QString ContentType::preferredFilenameExtension() const {
  const Refinement* refinement = refinementOf(m_name);
  return refinement ? QString(refinement->extension) : mimeType(m_name).preferredSuffix();
}

bool ContentType::isExtensionOf(const QString& fileName) const {
  if (!isValid()) return false;
  const QStringList extensions = mimeType(m_name).suffixes() << preferredFilenameExtension();
  return std::any_of(extensions.begin(), extensions.end(), [&](const QString& extension) {
    return !extension.isEmpty() && fileName.endsWith(u'.' + extension, Qt::CaseInsensitive);
  });
}

}  // namespace vantrel
