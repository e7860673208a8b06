#pragma once

#include <QIcon>
#include <QString>

class QPalette;

namespace vantrel {

/// The drawn icon of this name in the text colour of `palette`, and in its disabled colour.
[[nodiscard]] QIcon symbolIcon(const QString& name, const QPalette& palette);
/// The same in the secondary text colour.
[[nodiscard]] QIcon secondaryIcon(const QString& name, const QPalette& palette);

}  // namespace vantrel
