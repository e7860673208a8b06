#pragma once

#include <QString>

namespace vantrel {

/// What the desktop tells of an export that ended while nobody was looking.
struct ExportNotice {
  QString title;
  /// One plain line.
  QString text;
  bool isFailure = false;

  /// `name` is that of the finished file.
  [[nodiscard]] static ExportNotice ofFinished(const QString& name);
  /// `message` is what the user is told of the failure.
  [[nodiscard]] static ExportNotice ofFailed(const QString& message);

  friend bool operator==(const ExportNotice&, const ExportNotice&) = default;
};

}  // namespace vantrel
