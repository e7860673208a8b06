#include "platform/desktop/translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <memory>

#include "platform/desktop/bundled_file.h"

namespace vantrel {
namespace {

/// Of the catalogue that holds this language: its own, or that of its kind in any country.
QString foundIn(const QStringList& catalogues, QString language) {
  language.replace(u'-', u'_');
  for (;;) {
    if (catalogues.contains(QStringLiteral("vantrel_%1.qm").arg(language))) return language;
    const qsizetype end = language.lastIndexOf(u'_');
    if (end < 0) return {};
    language.truncate(end);
  }
}

bool isSource(const QString& language) {
  return language == u'C' || language == QLatin1String("en") ||
         language.startsWith(QLatin1String("en-")) || language.startsWith(QLatin1String("en_"));
}

bool install(const QString& name, const QString& folder) {
  auto translator = std::make_unique<QTranslator>();
  if (!translator->load(name, folder)) return false;
  QCoreApplication::installTranslator(translator.get());
  translator.release()->setParent(QCoreApplication::instance());
  return true;
}

}  // namespace

QStringList userLanguages() {
  return QLocale::system().uiLanguages();
}

QString translationsFolder() {
  return bundledPath(QStringLiteral("translations"));
}

QString installTranslations(const QStringList& languages, const QString& folder) {
  if (languages.isEmpty() || isSource(languages.first())) return {};
  const QStringList catalogues =
      QDir(folder).entryList({QStringLiteral("vantrel_*.qm")}, QDir::Files);
  if (catalogues.isEmpty()) return {};
  for (const QString& wanted : languages) {
    if (isSource(wanted)) return {};
    const QString language = foundIn(catalogues, wanted);
    if (language.isEmpty() || !install(QStringLiteral("vantrel_") + language, folder)) continue;
    // Only together, so that no dialog speaks two languages.
    install(QStringLiteral("qtbase_") + language,
            QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    return language;
  }
  return {};
}

}  // namespace vantrel
