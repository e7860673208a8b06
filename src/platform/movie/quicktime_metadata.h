#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/movie/movie_metadata.h"

namespace vantrel {

/// A whole `meta` box in the form that QuickTime movies use, where it has no version and flags,
/// which MP4 adds. Empty if it is neither.
[[nodiscard]] std::vector<uint8_t> quickTimeMetaBox(std::span<const uint8_t> payload);

/// A whole `udta` box with the `meta` boxes in it in that form.
[[nodiscard]] std::vector<uint8_t> quickTimeUserDataBox(std::span<const uint8_t> payload);

/// The items of a whole `meta` box in that form whose keys are of the namespace "mdta".
[[nodiscard]] std::vector<MovieMetadataItem> metadataItems(std::span<const uint8_t> metaBox);

}  // namespace vantrel
