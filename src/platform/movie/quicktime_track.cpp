#include "platform/movie/quicktime_track.h"

#include <algorithm>
#include <array>
#include <limits>

#include "platform/movie/box_bytes.h"
#include "platform/movie/edit_list.h"
#include "platform/movie/quicktime_metadata.h"

namespace vantrel {
namespace {

/// Bytes of a sample description before what its kind adds: size, format, reserved, data reference.
constexpr uint64_t kDescriptionStart = 16;
/// What a video description adds before its boxes.
constexpr uint64_t kVideoDescription = 70;

/// The payload of the first child of this type; empty if there is none.
std::vector<uint8_t> loadChild(BoxFile& file, const FileBox& parent, uint32_t type) {
  const std::optional<FileBox> box = file.child(parent, type);
  if (!box) return {};
  return file.load(box->payload, box->end).value_or(std::vector<uint8_t>{});
}

bool readTrackHeader(BoxFile& file, const FileBox& trak, QuickTimeTrack& track) {
  const std::vector<uint8_t> bytes = loadChild(file, trak, fourCC("tkhd"));
  ByteCursor cursor(bytes);
  const uint32_t versionAndFlags = cursor.u32();
  const bool wide = versionAndFlags >> 24 == 1;
  track.enabled = (versionAndFlags & 1) != 0;
  cursor.skip(wide ? 16 : 8);  // creation and modification time
  track.trackID = cursor.u32();
  cursor.skip(4);
  track.duration = knownDuration(cursor.word(wide), wide);
  return cursor.ok();
}

bool readMediaHeader(BoxFile& file, const FileBox& media, QuickTimeTrack& track) {
  const std::vector<uint8_t> bytes = loadChild(file, media, fourCC("mdhd"));
  ByteCursor cursor(bytes);
  const bool wide = cursor.u32() >> 24 == 1;
  cursor.skip(wide ? 16 : 8);  // creation and modification time
  track.timescale = cursor.u32();
  track.mediaDuration = knownDuration(cursor.word(wide), wide);
  track.language = cursor.u16();
  return cursor.ok() && track.timescale != 0;
}

void readHandler(BoxFile& file, const FileBox& media, QuickTimeTrack& track) {
  const std::vector<uint8_t> bytes = loadChild(file, media, fourCC("hdlr"));
  ByteCursor cursor(bytes);
  cursor.skip(8);
  const auto type = cursor.take(4);
  track.handler.assign(type.begin(), type.end());
}

void readLanguageTag(BoxFile& file, const FileBox& media, QuickTimeTrack& track) {
  const std::vector<uint8_t> bytes = loadChild(file, media, fourCC("elng"));
  ByteCursor cursor(bytes);
  cursor.skip(4);
  const auto text = cursor.rest();
  if (text.empty()) return;
  track.extendedLanguageTag.emplace(text.begin(), std::find(text.begin(), text.end(), 0));
}

std::vector<QuickTimeEdit> readEdits(BoxFile& file, const FileBox& trak) {
  const std::optional<FileBox> box = file.child(trak, fourCC("edts"));
  if (!box) return {};
  return parseEditList(loadChild(file, *box, fourCC("elst")));
}

ColorTags colorOf(std::span<const uint8_t> boxes) {
  while (const std::optional<BoxView> box = takeBox(boxes)) {
    if (box->type != fourCC("colr")) continue;
    ByteCursor cursor(box->payload);
    const uint32_t kind = cursor.u32();
    if (kind != fourCC("nclc") && kind != fourCC("nclx")) continue;
    ColorTags tags;
    tags.primaries = cursor.u16();
    tags.transfer = cursor.u16();
    tags.matrix = cursor.u16();
    if (cursor.ok()) return tags;
  }
  return {};
}

std::vector<ColorTags> readDescriptions(BoxFile& file, const FileBox& table, bool isVideo) {
  const std::vector<uint8_t> bytes = loadChild(file, table, fourCC("stsd"));
  ByteCursor cursor(bytes);
  cursor.skip(4);
  const uint32_t count = cursor.u32();
  std::span<const uint8_t> rest = cursor.rest();
  std::vector<ColorTags> descriptions;
  for (uint32_t i = 0; i < count; ++i) {
    // A description has the form of a box whose type is the format.
    const std::optional<BoxView> description = takeBox(rest);
    if (!description) break;
    ByteCursor contents(description->whole);
    contents.skip(kDescriptionStart + (isVideo ? kVideoDescription : 0));
    descriptions.push_back(isVideo ? colorOf(contents.rest()) : ColorTags{});
  }
  return descriptions;
}

/// Of `stsz` or `stz2`, which agree in where it stands.
uint64_t readSampleCount(BoxFile& file, const FileBox& table) {
  std::optional<FileBox> sizes = file.child(table, fourCC("stsz"));
  if (!sizes) sizes = file.child(table, fourCC("stz2"));
  std::array<uint8_t, 12> bytes{};
  if (!sizes || sizes->end - sizes->payload < bytes.size() || !file.read(sizes->payload, bytes)) {
    return 0;
  }
  ByteCursor cursor(bytes);
  cursor.skip(8);
  return cursor.u32();
}

}  // namespace

uint64_t knownDuration(uint64_t ticks, bool wide) {
  if (!wide && ticks == std::numeric_limits<uint32_t>::max()) return 0;
  return ticks > uint64_t{std::numeric_limits<int64_t>::max()} ? 0 : ticks;
}

std::optional<QuickTimeTrack> readQuickTimeTrack(BoxFile& file, const FileBox& trak) {
  QuickTimeTrack track;
  const std::optional<FileBox> media = file.child(trak, fourCC("mdia"));
  if (!media || !readTrackHeader(file, trak, track) || !readMediaHeader(file, *media, track)) {
    return std::nullopt;
  }
  readHandler(file, *media, track);
  readLanguageTag(file, *media, track);
  track.edits = readEdits(file, trak);
  if (const std::optional<FileBox> userData = file.child(trak, fourCC("udta"))) {
    const auto bytes = file.load(userData->payload, userData->end);
    if (bytes) track.userData = quickTimeUserDataBox(*bytes);
  }
  if (const std::optional<FileBox> metadata = file.child(trak, fourCC("meta"))) {
    const auto bytes = file.load(metadata->payload, metadata->end);
    if (bytes) track.metadata = quickTimeMetaBox(*bytes);
    track.items = metadataItems(track.metadata);
  }
  const std::optional<FileBox> information = file.child(*media, fourCC("minf"));
  const auto table = information ? file.child(*information, fourCC("stbl")) : std::nullopt;
  if (table) {
    track.descriptions = readDescriptions(file, *table, track.handler == "vide");
    track.sampleCount = readSampleCount(file, *table);
  }
  return track;
}

}  // namespace vantrel
