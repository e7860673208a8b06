#include "platform/image/image_signature.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace vantrel {
namespace {

using namespace std::string_view_literals;

constexpr std::array kHevcBrands = {"heic"sv, "heix"sv, "heim"sv, "heis"sv,
                                    "hevc"sv, "hevx"sv, "hevm"sv, "hevs"sv};
constexpr std::array kAnyCodecBrands = {"mif1"sv, "mif2"sv, "msf1"sv, "miaf"sv};
constexpr std::array kAv1Brands = {"avif"sv, "avis"sv};

// Length of the fields of `ftyp` before its list of compatible brands.
constexpr size_t kFileTypeHeader = 16;

std::string_view text(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

uint32_t bigEndian32(std::string_view bytes) {
  uint32_t value = 0;
  for (const char byte : bytes.substr(0, 4))
    value = value << 8 | static_cast<unsigned char>(byte);
  return value;
}

bool isOneOf(std::string_view brand, std::span<const std::string_view> brands) {
  return std::find(brands.begin(), brands.end(), brand) != brands.end();
}

bool anyIsOneOf(std::string_view compatible, std::span<const std::string_view> brands) {
  for (; compatible.size() >= 4; compatible.remove_prefix(4)) {
    if (isOneOf(compatible.substr(0, 4), brands)) return true;
  }
  return false;
}

}  // namespace

bool isPng(std::span<const std::byte> head) {
  return text(head).starts_with("\x89PNG\r\n\x1a\n"sv);
}

bool isJpeg(std::span<const std::byte> head) {
  return text(head).starts_with("\xff\xd8\xff"sv);
}

bool isTiff(std::span<const std::byte> head) {
  const std::string_view start = text(head);
  return start.starts_with("II*\0"sv) || start.starts_with("MM\0*"sv) ||
         start.starts_with("II+\0"sv) || start.starts_with("MM\0+"sv);
}

std::optional<ImageType> heifType(std::span<const std::byte> head) {
  const std::string_view start = text(head);
  if (start.size() < kFileTypeHeader || start.substr(4, 4) != "ftyp"sv) return std::nullopt;
  const uint32_t length = bigEndian32(start);
  if (length < kFileTypeHeader) return std::nullopt;

  const std::string_view major = start.substr(8, 4);
  const std::string_view compatible =
      start.substr(0, std::min<size_t>(start.size(), length)).substr(kFileTypeHeader);
  if (isOneOf(major, kHevcBrands)) return ImageType::Heic;
  if (isOneOf(major, kAv1Brands)) return std::nullopt;
  const bool hevc = anyIsOneOf(compatible, kHevcBrands);
  if (anyIsOneOf(compatible, kAv1Brands) && !hevc) return std::nullopt;
  if (isOneOf(major, kAnyCodecBrands)) return ImageType::Heif;
  if (hevc) return ImageType::Heic;
  if (anyIsOneOf(compatible, kAnyCodecBrands)) return ImageType::Heif;
  return std::nullopt;
}

}  // namespace vantrel
