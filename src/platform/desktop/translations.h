#pragma once

#include <QString>
#include <QStringList>

namespace vantrel {

/// The languages of the user, the best first.
[[nodiscard]] QStringList userLanguages();

/// Where the catalogues that come with the program lie. Needs the QCoreApplication.
[[nodiscard]] QString translationsFolder();

/// Shows the texts of the program, and with them the toolkit's, in the first of these languages
/// that `folder` holds a catalogue for, vantrel_<language>.qm; or as they are written when English
/// comes first, which then costs no look at the disk, and when there is none. Numbers and byte
/// counts stay as they are. Before the first window, on the main thread. Returns the language that
/// was found, or nothing.
QString installTranslations(const QStringList& languages, const QString& folder);

}  // namespace vantrel
