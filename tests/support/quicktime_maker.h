#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel::testing {

/// A number in any number of bytes, the most significant first.
[[nodiscard]] std::string bigEndian(uint64_t value, int bytes);

/// A box whole, for boxes made by hand.
[[nodiscard]] std::string box(std::string_view type, std::string_view payload);

/// A box with version and flags in front of its payload.
[[nodiscard]] std::string fullBox(std::string_view type, std::string_view payload,
                                  uint32_t versionAndFlags = 0);

/// A box to be changed: one that holds boxes has them as `children`, any other its payload.
struct EditableBox {
  std::string type;
  std::string payload;
  std::vector<EditableBox> children;

  [[nodiscard]] static EditableBox parse(std::string_view whole);
  [[nodiscard]] std::string bytes() const;
  /// The first child of this type. Throws if there is none.
  [[nodiscard]] EditableBox& child(std::string_view childType);
  [[nodiscard]] bool has(std::string_view childType) const;
  void remove(std::string_view childType);
};

/// The movie header of a file.
[[nodiscard]] EditableBox movieHeaderOf(const std::filesystem::path& file);
/// The `trak` with this id. Throws if there is none.
[[nodiscard]] EditableBox& trackOf(EditableBox& moov, uint32_t trackID);

/// Changes the movie header of a file. The new one is written to the file's end, the old one
/// becomes free space: nothing else moves.
void editMovieHeader(const std::filesystem::path& file,
                     const std::function<void(EditableBox& moov)>& edit);
/// The same for one track.
void editTrack(const std::filesystem::path& file, uint32_t trackID,
               const std::function<void(EditableBox& trak)>& edit);

void setTrackEnabled(const std::filesystem::path& file, uint32_t trackID, bool enabled);

/// Whole numbers of the transform that turns the picture for display: x' = a x + c y + tx,
/// y' = b x + d y + ty.
struct MadeMatrix {
  int16_t a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
};
/// Takes the place of the track's matrix.
void setMatrix(const std::filesystem::path& file, uint32_t trackID, const MadeMatrix& matrix);

/// As an edit list has it: movie ticks, track ticks (-1: empty), 16.16 fixed point.
struct MadeEdit {
  uint32_t segmentDuration = 0;
  int32_t mediaTime = 0;
  uint32_t mediaRate = 0x10000;
};
/// Takes the place of the track's edits; none removes them.
void setEdits(const std::filesystem::path& file, uint32_t trackID,
              const std::vector<MadeEdit>& edits);

/// Adds a whole box, such as `udta` or `meta`, to the end of the track.
void addToTrack(const std::filesystem::path& file, uint32_t trackID, std::string_view whole);
/// Adds `elng` behind the media header.
void setExtendedLanguage(const std::filesystem::path& file, uint32_t trackID, std::string_view tag);

/// One item of `metadataBox`.
struct MadeItem {
  std::string key;
  std::string value;
  uint32_t type = 1;
  std::string keyNamespace = "mdta";
};
/// A `meta` box of handler "mdta" as QuickTime movies have it, or with version and flags.
[[nodiscard]] std::string metadataBox(const std::vector<MadeItem>& items, bool isFullBox = false);
/// The density record of such a box.
[[nodiscard]] MadeItem densityItem(uint32_t widthPixels, uint32_t heightPixels,
                                   uint32_t widthPoints, uint32_t heightPoints);

}  // namespace vantrel::testing
