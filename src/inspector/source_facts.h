#pragma once

#include <QString>
#include <vector>

#include "inspector/inspector_source.h"

namespace vantrel {

/// One row about the source.
struct SourceFact {
  QString title, value;
  /// The tool tip, if the row has one.
  QString help;
  friend bool operator==(const SourceFact&, const SourceFact&) = default;
};

/// What the panel tells of an image, or of a video, or of nothing in the rows of a video.
[[nodiscard]] std::vector<SourceFact> sourceFacts(const InspectorSource& source);

}  // namespace vantrel
