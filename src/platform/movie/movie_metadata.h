#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace vantrel {

/// Named numbers in their order.
using MetadataDictionary = std::vector<std::pair<std::string, double>>;

/// One item of a track's `meta` box of handler "mdta" (QuickTime File Format, "Metadata").
struct MovieMetadataItem {
  /// Of a display-density record. Its data has 16 bytes: four big-endian unsigned 32-bit numbers,
  /// in the order of kDensityKeys.
  static constexpr const char* kPixelDensity = "mdta/com.apple.quicktime.pixeldensity";
  static constexpr const char* kDensityKeys[] = {"widthPixels", "heightPixels", "widthPoints",
                                                 "heightPoints"};

  /// "mdta/" and the key.
  std::string identifier;
  /// The well-known type of the `data` box (30 for a density record); absent if there was no box.
  std::optional<uint32_t> dataType;
  /// A dictionary for a well-formed density record, the plain bytes for everything else.
  std::variant<std::vector<uint8_t>, MetadataDictionary> value;

  friend bool operator==(const MovieMetadataItem&, const MovieMetadataItem&) = default;
};

}  // namespace vantrel
