#include "support/quicktime_maker.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace vantrel::testing {
namespace {

constexpr std::string_view kParents[] = {"moov", "trak", "mdia", "minf", "stbl", "edts", "mvex"};

uint64_t numberAt(std::string_view bytes, size_t at, int count) {
  uint64_t value = 0;
  for (int i = 0; i < count; ++i)
    value = value << 8 | static_cast<unsigned char>(bytes.at(at + static_cast<size_t>(i)));
  return value;
}

/// Where the movie header stands in a file.
struct Place {
  uint64_t begin = 0, size = 0;
};

Place placeOfMovieHeader(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const uint64_t end = std::filesystem::file_size(file);
  for (uint64_t at = 0; at < end;) {
    std::string header(16, '\0');
    stream.clear();
    stream.seekg(static_cast<std::streamoff>(at));
    stream.read(header.data(), 16);
    uint64_t size = numberAt(header, 0, 4);
    if (size == 1) size = numberAt(header, 8, 8);
    if (size == 0) size = end - at;
    if (header.substr(4, 4) == "moov") return {at, size};
    if (size < 8) break;
    at += size;
  }
  throw std::runtime_error("no movie header in " + file.string());
}

}  // namespace

std::string bigEndian(uint64_t value, int bytes) {
  std::string result;
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
    result += static_cast<char>(shift < 64 ? value >> shift & 0xff : 0);
  return result;
}

std::string box(std::string_view type, std::string_view payload) {
  return bigEndian(payload.size() + 8, 4).append(type).append(payload);
}

std::string fullBox(std::string_view type, std::string_view payload, uint32_t versionAndFlags) {
  return box(type, bigEndian(versionAndFlags, 4).append(payload));
}

EditableBox EditableBox::parse(std::string_view whole) {
  EditableBox result{std::string(whole.substr(4, 4)), {}, {}};
  if (std::find(std::begin(kParents), std::end(kParents), result.type) == std::end(kParents)) {
    result.payload = whole.substr(8);
    return result;
  }
  for (size_t at = 8; at + 8 <= whole.size();) {
    const auto size = static_cast<size_t>(numberAt(whole, at, 4));
    if (size < 8) throw std::runtime_error("not a short box in " + result.type);
    result.children.push_back(parse(whole.substr(at, size)));
    at += size;
  }
  return result;
}

std::string EditableBox::bytes() const {
  std::string contents = payload;
  for (const EditableBox& each : children)
    contents += each.bytes();
  return box(type, contents);
}

EditableBox& EditableBox::child(std::string_view childType) {
  for (EditableBox& each : children) {
    if (each.type == childType) return each;
  }
  throw std::runtime_error("no " + std::string(childType) + " in " + type);
}

bool EditableBox::has(std::string_view childType) const {
  return std::any_of(children.begin(), children.end(),
                     [childType](const EditableBox& each) { return each.type == childType; });
}

void EditableBox::remove(std::string_view childType) {
  std::erase_if(children, [childType](const EditableBox& each) { return each.type == childType; });
}

EditableBox movieHeaderOf(const std::filesystem::path& file) {
  const Place place = placeOfMovieHeader(file);
  std::string bytes(static_cast<size_t>(place.size), '\0');
  std::ifstream stream(file, std::ios::binary);
  stream.seekg(static_cast<std::streamoff>(place.begin));
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!stream) throw std::runtime_error("no whole movie header in " + file.string());
  return EditableBox::parse(bytes);
}

EditableBox& trackOf(EditableBox& moov, uint32_t trackID) {
  for (EditableBox& each : moov.children) {
    if (each.type != "trak") continue;
    const std::string& header = each.child("tkhd").payload;
    if (numberAt(header, header.at(0) == 1 ? 20 : 12, 4) == trackID) return each;
  }
  throw std::runtime_error("no track " + std::to_string(trackID));
}

void editMovieHeader(const std::filesystem::path& file,
                     const std::function<void(EditableBox& moov)>& edit) {
  const Place place = placeOfMovieHeader(file);
  EditableBox moov = movieHeaderOf(file);
  edit(moov);
  std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
  stream.seekp(static_cast<std::streamoff>(place.begin + 4));
  stream << "free";
  stream.seekp(0, std::ios::end);
  stream << moov.bytes();
  stream.flush();
  if (!stream) throw std::runtime_error("cannot change " + file.string());
}

void editTrack(const std::filesystem::path& file, uint32_t trackID,
               const std::function<void(EditableBox& trak)>& edit) {
  editMovieHeader(file, [&](EditableBox& moov) { edit(trackOf(moov, trackID)); });
}

void setTrackEnabled(const std::filesystem::path& file, uint32_t trackID, bool enabled) {
  editTrack(file, trackID, [enabled](EditableBox& trak) {
    char& flags = trak.child("tkhd").payload.at(3);
    flags = static_cast<char>(enabled ? flags | 1 : flags & ~1);
  });
}

void setMatrix(const std::filesystem::path& file, uint32_t trackID, const MadeMatrix& matrix) {
  const auto fixed = [](int16_t value) {
    return bigEndian(static_cast<uint32_t>(value * 0x10000), 4);
  };
  const std::string none = bigEndian(0, 4);
  const std::string bytes = fixed(matrix.a) + fixed(matrix.b) + none + fixed(matrix.c) +
                            fixed(matrix.d) + none + fixed(matrix.tx) + fixed(matrix.ty) +
                            bigEndian(0x40000000, 4);
  editTrack(file, trackID, [&bytes](EditableBox& trak) {
    std::string& header = trak.child("tkhd").payload;
    header.replace(header.at(0) == 1 ? 52 : 40, bytes.size(), bytes);
  });
}

void setEdits(const std::filesystem::path& file, uint32_t trackID,
              const std::vector<MadeEdit>& edits) {
  editTrack(file, trackID, [&edits](EditableBox& trak) {
    trak.remove("edts");
    if (edits.empty()) return;
    std::string list = bigEndian(edits.size(), 4);
    for (const MadeEdit& edit : edits) {
      list += bigEndian(edit.segmentDuration, 4);
      list += bigEndian(static_cast<uint32_t>(edit.mediaTime), 4);
      list += bigEndian(edit.mediaRate, 4);
    }
    const auto media = std::find_if(trak.children.begin(), trak.children.end(),
                                    [](const EditableBox& each) { return each.type == "mdia"; });
    trak.children.insert(media, EditableBox::parse(box("edts", fullBox("elst", list))));
  });
}

void addToTrack(const std::filesystem::path& file, uint32_t trackID, std::string_view whole) {
  editTrack(file, trackID,
            [whole](EditableBox& trak) { trak.children.push_back(EditableBox::parse(whole)); });
}

void setExtendedLanguage(const std::filesystem::path& file, uint32_t trackID,
                         std::string_view tag) {
  editTrack(file, trackID, [tag](EditableBox& trak) {
    EditableBox& media = trak.child("mdia");
    media.remove("elng");
    const std::string whole = fullBox("elng", std::string(tag) + '\0');
    media.children.insert(media.children.begin() + 1, EditableBox::parse(whole));
  });
}

std::string metadataBox(const std::vector<MadeItem>& items, bool isFullBox) {
  std::string keys = bigEndian(items.size(), 4), list;
  for (size_t i = 0; i < items.size(); ++i) {
    keys += box(items[i].keyNamespace, items[i].key);
    list += box(bigEndian(i + 1, 4),
                box("data", bigEndian(items[i].type, 4) + bigEndian(0, 4) + items[i].value));
  }
  const std::string handler = fullBox("hdlr", bigEndian(0, 4) + "mdta" + std::string(13, '\0'));
  const std::string contents = handler + fullBox("keys", keys) + box("ilst", list);
  return isFullBox ? fullBox("meta", contents) : box("meta", contents);
}

MadeItem densityItem(uint32_t widthPixels, uint32_t heightPixels, uint32_t widthPoints,
                     uint32_t heightPoints) {
  return {"com.apple.quicktime.pixeldensity",
          bigEndian(widthPixels, 4) + bigEndian(heightPixels, 4) + bigEndian(widthPoints, 4) +
              bigEndian(heightPoints, 4),
          30};
}

}  // namespace vantrel::testing
