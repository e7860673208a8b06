#include "platform/image/image_reader.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "platform/image/heif_reader.h"
#include "platform/image/image_signature.h"
#include "platform/image/jpeg_reader.h"
#include "platform/image/png_reader.h"
#include "platform/image/read_only_file.h"
#include "platform/image/tiff_reader.h"

namespace vantrel {
namespace {

bool isHeif(std::span<const std::byte> head) {
  return heifType(head).has_value();
}

/// One kind of file: how its first bytes are recognised, and how it is opened.
struct Format {
  bool (*recognises)(std::span<const std::byte> head);
  std::unique_ptr<ImageReader> (*open)(ReadOnlyFile file);
};

constexpr std::array kFormats = {
    Format{isPng, openPng},
    Format{isJpeg, openJpeg},
    Format{isTiff, openTiff},
    Format{isHeif, openHeif},
};

}  // namespace

std::unique_ptr<ImageReader> ImageReader::open(const std::filesystem::path& path) {
  std::optional<ReadOnlyFile> file = ReadOnlyFile::open(path);
  if (!file) return nullptr;
  std::array<std::byte, kSignatureBytes> buffer;
  const auto head = std::span<const std::byte>(buffer).first(file->read(0, buffer));
  const auto* const format = std::find_if(kFormats.begin(), kFormats.end(),
                                          [head](const Format& f) { return f.recognises(head); });
  return format == kFormats.end() ? nullptr : format->open(*std::move(file));
}

}  // namespace vantrel
