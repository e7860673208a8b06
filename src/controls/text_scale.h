#pragma once

namespace vantrel {

/// How much larger than the design's 13 points the text of the application is; at least 1.
[[nodiscard]] double textScale();

/// A size of the design, in points: of a font, or of what has to hold text.
[[nodiscard]] int scaledForText(int points);

}  // namespace vantrel
