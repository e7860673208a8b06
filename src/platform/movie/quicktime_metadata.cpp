#include "platform/movie/quicktime_metadata.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "platform/movie/box_bytes.h"
#include "platform/movie/quicktime_atoms.h"

namespace vantrel {
namespace {

constexpr uint32_t kMeta = fourCC("meta"), kHandler = fourCC("hdlr"), kKeys = fourCC("keys"),
                   kItems = fourCC("ilst"), kData = fourCC("data"),
                   kMetadataHandler = fourCC("mdta");
constexpr std::string_view kIdentifierPrefix = "mdta/";
/// Version and flags of a full box.
constexpr size_t kFullBoxHeader = 4;
/// Type and locale of a value.
constexpr size_t kDataHeader = 8;
/// The well-known type of a density record.
constexpr uint32_t kDensityType = 30;
/// Bytes that all items of a box may take: any number of values may share one long key.
constexpr size_t kMostItemBytes = size_t{4} << 20;

/// Whether boxes follow each other in `bytes` up to their end. Four bytes of zero may end a list.
bool areBoxes(std::span<const uint8_t> bytes) {
  bool any = false;
  while (takeBox(bytes))
    any = true;
  return any && (bytes.empty() || (bytes.size() == 4 && ByteCursor(bytes).u32() == 0));
}

std::vector<uint8_t> box(uint32_t type, std::span<const uint8_t> payload) {
  BoxWriter writer;
  writer.begin(type);
  writer.append(payload);
  writer.end();
  return writer.release();
}

/// Full identifiers in their order, empty for keys of other namespaces.
std::vector<std::string> identifiers(std::span<const uint8_t> keysPayload) {
  std::vector<std::string> result;
  ByteCursor cursor(keysPayload);
  cursor.skip(kFullBoxHeader);
  const uint32_t count = cursor.u32();
  std::span<const uint8_t> rest = cursor.rest();
  // A key has the form of a box whose type is the namespace.
  for (uint32_t i = 0; i < count; ++i) {
    const std::optional<BoxView> key = takeBox(rest);
    if (!key) break;
    std::string& identifier = result.emplace_back();
    if (key->type != kMetadataHandler) continue;
    identifier = kIdentifierPrefix;
    identifier.append(key->payload.begin(), key->payload.end());
  }
  return result;
}

void interpretDensity(MovieMetadataItem& item) {
  const auto& bytes = std::get<std::vector<uint8_t>>(item.value);
  constexpr size_t kNumbers = std::size(MovieMetadataItem::kDensityKeys);
  if (item.identifier != MovieMetadataItem::kPixelDensity || bytes.size() != 4 * kNumbers) return;
  ByteCursor cursor(bytes);
  MetadataDictionary dictionary;
  for (const char* key : MovieMetadataItem::kDensityKeys)
    dictionary.emplace_back(key, cursor.u32());
  item.value = std::move(dictionary);
}

/// The items of a list as long as there is room for them.
class ItemList final {
 public:
  /// One item for each value of an entry. False if there is no more room.
  [[nodiscard]] bool add(const std::string& identifier, const BoxView& entry) {
    std::span<const uint8_t> rest = entry.payload;
    bool any = false;
    while (const std::optional<BoxView> data = takeBox(rest)) {
      if (data->type != kData || data->payload.size() < kDataHeader) continue;
      ByteCursor cursor(data->payload);
      const uint32_t dataType = cursor.u32();
      cursor.skip(4);  // locale
      if (!add(identifier, dataType, cursor.rest())) return false;
      any = true;
    }
    return any || add(identifier, std::nullopt, {});
  }

  [[nodiscard]] std::vector<MovieMetadataItem> release() { return std::move(m_items); }

 private:
  bool add(const std::string& identifier, std::optional<uint32_t> dataType,
           std::span<const uint8_t> value) {
    const size_t bytes = sizeof(MovieMetadataItem) + identifier.size() + value.size();
    if (bytes > m_room) return false;
    m_room -= bytes;
    m_items.push_back({identifier, dataType, std::vector<uint8_t>(value.begin(), value.end())});
    interpretDensity(m_items.back());
    return true;
  }

  size_t m_room = kMostItemBytes;
  std::vector<MovieMetadataItem> m_items;
};

void writeValue(BoxWriter& writer, const MovieMetadataItem& item) {
  const auto* dictionary = std::get_if<MetadataDictionary>(&item.value);
  const auto* bytes = std::get_if<std::vector<uint8_t>>(&item.value);
  if (!dictionary && !item.dataType && bytes->empty()) return;
  writer.begin(kData);
  writer.u32(item.dataType.value_or(dictionary ? kDensityType : 0));
  writer.u32(0);  // locale
  if (bytes) writer.append(*bytes);
  for (const char* key : MovieMetadataItem::kDensityKeys) {
    if (!dictionary) break;
    const auto named = [key](const auto& entry) { return entry.first == key; };
    const auto found = std::find_if(dictionary->begin(), dictionary->end(), named);
    const double value = found == dictionary->end() ? 0 : found->second;
    // Not a number counts as 0.
    constexpr double kMost = std::numeric_limits<uint32_t>::max();
    writer.u32(value > 0 ? static_cast<uint32_t>(std::min(std::trunc(value), kMost)) : 0);
  }
  writer.end();
}

}  // namespace

std::vector<uint8_t> quickTimeMetaBox(std::span<const uint8_t> payload) {
  if (areBoxes(payload)) return box(kMeta, payload);
  if (payload.size() < kFullBoxHeader || !areBoxes(payload.subspan(kFullBoxHeader))) return {};
  return box(kMeta, payload.subspan(kFullBoxHeader));
}

std::vector<uint8_t> quickTimeUserDataBox(std::span<const uint8_t> payload) {
  BoxWriter writer;
  writer.begin(fourCC("udta"));
  while (const std::optional<BoxView> entry = takeBox(payload)) {
    if (entry->type != kMeta) {
      writer.append(entry->whole);
      continue;
    }
    const std::vector<uint8_t> meta = quickTimeMetaBox(entry->payload);
    writer.append(meta.empty() ? entry->whole : std::span<const uint8_t>(meta));
  }
  writer.append(payload);
  writer.end();
  return writer.release();
}

std::vector<MovieMetadataItem> metadataItems(std::span<const uint8_t> metaBox) {
  const std::optional<BoxView> meta = findBox(metaBox, kMeta);
  if (!meta) return {};
  const std::optional<BoxView> handler = findBox(meta->payload, kHandler);
  const std::optional<BoxView> keys = findBox(meta->payload, kKeys);
  const std::optional<BoxView> list = findBox(meta->payload, kItems);
  if (!handler || !keys || !list) return {};
  ByteCursor cursor(handler->payload);
  cursor.skip(kFullBoxHeader + 4);
  if (cursor.u32() != kMetadataHandler) return {};

  const std::vector<std::string> names = identifiers(keys->payload);
  ItemList items;
  std::span<const uint8_t> rest = list->payload;
  while (const std::optional<BoxView> entry = takeBox(rest)) {
    // The type of an entry is the number of its key, counted from 1.
    if (entry->type == 0 || entry->type > names.size()) continue;
    const std::string& name = names[entry->type - 1];
    if (!name.empty() && !items.add(name, *entry)) break;
  }
  return items.release();
}

std::vector<uint8_t> quickTimeUserDataBox(const std::string& trackName) {
  if (trackName.empty()) return {};
  BoxWriter writer;
  writer.begin(fourCC("udta"));
  writer.begin(fourCC("name"));
  writer.append(trackName);
  writer.end();
  writer.end();
  return writer.release();
}

std::vector<uint8_t> quickTimeMetadataBox(const std::vector<MovieMetadataItem>& items) {
  if (items.empty()) return {};
  BoxWriter writer;
  writer.begin(kMeta);
  writer.begin(kHandler);
  writer.zeros(kFullBoxHeader + 4);
  writer.u32(kMetadataHandler);
  writer.zeros(12 + 1);  // reserved, and an empty name
  writer.end();

  writer.begin(kKeys);
  writer.zeros(kFullBoxHeader);
  writer.u32(static_cast<uint32_t>(items.size()));
  for (const MovieMetadataItem& item : items) {
    std::string_view key = item.identifier;
    if (key.starts_with(kIdentifierPrefix)) key.remove_prefix(kIdentifierPrefix.size());
    writer.begin(kMetadataHandler);
    writer.append(key);
    writer.end();
  }
  writer.end();

  writer.begin(kItems);
  for (size_t i = 0; i < items.size(); ++i) {
    writer.begin(static_cast<uint32_t>(i + 1));
    writeValue(writer, items[i]);
    writer.end();
  }
  writer.end();
  writer.end();
  return writer.release();
}

}  // namespace vantrel
