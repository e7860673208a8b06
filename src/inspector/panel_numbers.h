#pragma once

#include <QString>

/// Numbers as the sections of the panel write them.
namespace vantrel::PanelNumbers {

/// In the place of a value, or of a size, that is not there.
inline const QString kNone = QStringLiteral("—");
inline const QString kNoSize = QStringLiteral("— × —");

/// "52.40 Mbps".
[[nodiscard]] QString bitrate(double megabitsPerSecond);
/// A quality from 0 to 1 as "90%", a half rounded up.
[[nodiscard]] QString quality(double quality);

}  // namespace vantrel::PanelNumbers
