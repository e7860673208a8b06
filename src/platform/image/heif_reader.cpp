#include "platform/image/heif_reader.h"

#include <libheif/heif.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include "base/cancelled.h"
#include "platform/image/coded_profile.h"
#include "platform/image/color_profile.h"
#include "platform/image/heif_boxes.h"
#include "platform/image/heif_pixels.h"
#include "platform/image/image_signature.h"

namespace vantrel {
namespace {

template <auto Free>
struct HeifFree {
  template <typename Value>
  void operator()(Value* value) const {
    Free(value);
  }
};

using HeifContext = std::unique_ptr<heif_context, HeifFree<heif_context_free>>;
using HeifHandle = std::unique_ptr<heif_image_handle, HeifFree<heif_image_handle_release>>;
using HeifImage = std::shared_ptr<heif_image>;
using HeifOptions = std::unique_ptr<heif_decoding_options, HeifFree<heif_decoding_options_free>>;
using HeifNclx = std::unique_ptr<heif_color_profile_nclx, HeifFree<heif_nclx_color_profile_free>>;

/// The codec plugins, loaded once for the process.
class HeifLibrary {
 public:
  static void load() { static const HeifLibrary library; }

 private:
  HeifLibrary() { heif_init(nullptr); }
  ~HeifLibrary() { heif_deinit(); }
};

void check(const heif_error& error) {
  if (error.code == heif_error_Ok) return;
  if (error.code == heif_error_Memory_allocation_error &&
      error.subcode != heif_suberror_Security_limit_exceeded) {
    throw std::bad_alloc();
  }
  throw ImageDamaged();
}

/// What libheif reads the file through. The file may not grow.
struct FileView {
  const ReadOnlyFile& file;
  uint64_t position = 0;

  static const heif_reader* callbacks();
};

const heif_reader* FileView::callbacks() {
  static const heif_reader reader = [] {
    heif_reader made{};
    made.reader_api_version = 1;
    made.get_position = [](void* self) {
      return static_cast<int64_t>(static_cast<FileView*>(self)->position);
    };
    made.read = [](void* to, size_t size, void* self) {
      auto* view = static_cast<FileView*>(self);
      const size_t count = view->file.read(view->position, {static_cast<std::byte*>(to), size});
      view->position += count;
      return count == size ? 0 : 1;
    };
    made.seek = [](int64_t target, void* self) {
      static_cast<FileView*>(self)->position = static_cast<uint64_t>(target);
      return 0;
    };
    made.wait_for_file_size = [](int64_t size, void* self) {
      const uint64_t length = static_cast<FileView*>(self)->file.size();
      return size >= 0 && static_cast<uint64_t>(size) <= length
                 ? heif_reader_grow_status_size_reached
                 : heif_reader_grow_status_size_beyond_eof;
    };
    return made;
  }();
  return &reader;
}

class HeifReader final : public ImageReader {
 public:
  explicit HeifReader(ReadOnlyFile file);

  [[nodiscard]] ImageType type() const override { return m_type; }
  [[nodiscard]] int imageCount(const std::stop_token& stop) override;
  [[nodiscard]] Bitmap decode(const std::stop_token& stop) override;

 private:
  ReadOnlyFile m_file;
  HeifBoxes m_boxes;
  ImageType m_type;
  FileView m_view{m_file};
  HeifContext m_context;
  bool m_readable = false;
};

ImageType typeOf(const ReadOnlyFile& file, const HeifBoxes& boxes) {
  if (boxes.hasHevc) return ImageType::Heic;
  std::array<std::byte, kSignatureBytes> buffer;
  return heifType(std::span(buffer).first(file.read(0, buffer))).value_or(ImageType::Heif);
}

HeifReader::HeifReader(ReadOnlyFile file)
    : m_file(std::move(file)), m_boxes(HeifBoxes::read(m_file)), m_type(typeOf(m_file, m_boxes)) {
  HeifLibrary::load();
  m_context.reset(heif_context_alloc());
  if (!m_context) throw std::bad_alloc();
  const auto read = [this] {
    return heif_context_read_from_reader(m_context.get(), FileView::callbacks(), &m_view, nullptr);
  };
  m_readable = m_boxes.isSound && read().code == heif_error_Ok;
}

int HeifReader::imageCount(const std::stop_token& stop) {
  throwIfCancelled(stop);
  int stills = m_boxes.hasStills ? 1 : 0;
  if (m_readable) stills = heif_context_get_number_of_top_level_images(m_context.get());
  constexpr uint32_t kMost = std::numeric_limits<int>::max();
  return std::max(stills, static_cast<int>(std::min(m_boxes.sequenceFrames, kMost)));
}

/// Layout of the bitmap that a still becomes.
PixelLayout layoutOf(const heif_image_handle* handle, bool monochrome) {
  const int bits = heif_image_handle_get_luma_bits_per_pixel(handle);
  if (bits < 1 || bits > 16) throw ImageDamaged();
  PixelLayout layout;
  layout.model = monochrome ? ColorModel::Gray : ColorModel::Rgb;
  layout.sample = bits > 8 ? SampleFormat::UInt16 : SampleFormat::UInt8;
  layout.alpha = heif_image_handle_has_alpha_channel(handle) != 0;
  return layout;
}

heif_chroma chromaOf(const PixelLayout& layout) {
  if (layout.sample == SampleFormat::UInt8) {
    return layout.alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB;
  }
  if constexpr (std::endian::native == std::endian::little) {
    return layout.alpha ? heif_chroma_interleaved_RRGGBBAA_LE : heif_chroma_interleaved_RRGGBB_LE;
  } else {
    return layout.alpha ? heif_chroma_interleaved_RRGGBBAA_BE : heif_chroma_interleaved_RRGGBB_BE;
  }
}

/// Decodes to red, green and blue whatever the model is: libheif cannot turn or crop luminance
/// alone and keep it so.
HeifImage decodeImage(const heif_image_handle* handle, const PixelLayout& layout) {
  const HeifOptions options(heif_decoding_options_alloc());
  if (!options) throw std::bad_alloc();
  options->strict_decoding = 1;
  heif_image* image = nullptr;
  check(heif_decode_image(handle, &image, heif_colorspace_RGB, chromaOf(layout), options.get()));
  HeifImage owner(image, heif_image_release);
  heif_error warning;
  if (heif_image_get_decoding_warnings(image, 0, &warning, 1) > 0) throw ImageDamaged();
  return owner;
}

std::vector<uint8_t> embeddedProfile(const heif_image_handle* handle, ColorModel model) {
  const heif_color_profile_type type = heif_image_handle_get_color_profile_type(handle);
  if (type == heif_color_profile_type_prof || type == heif_color_profile_type_rICC) {
    std::vector<uint8_t> profile(heif_image_handle_get_raw_color_profile_size(handle));
    const bool read =
        !profile.empty() &&
        heif_image_handle_get_raw_color_profile(handle, profile.data()).code == heif_error_Ok;
    if (read && profileFits(profile, model)) return profile;
  }
  heif_color_profile_nclx* coded = nullptr;
  if (heif_image_handle_get_nclx_color_profile(handle, &coded).code != heif_error_Ok) return {};
  const HeifNclx owner(coded);
  return codedProfile(coded->color_primaries, coded->transfer_characteristics, model);
}

Bitmap HeifReader::decode(const std::stop_token& stop) {
  throwIfCancelled(stop);
  if (!m_readable) throw ImageDamaged();
  heif_image_handle* primary = nullptr;
  check(heif_context_get_primary_image_handle(m_context.get(), &primary));
  const HeifHandle handle(primary);
  const PixelLayout layout = layoutOf(primary, m_boxes.isMonochrome);
  const int width = heif_image_handle_get_width(primary);
  const int height = heif_image_handle_get_height(primary);
  if (width < 1 || height < 1 ||
      !Bitmap::fits(static_cast<uint64_t>(width), static_cast<uint64_t>(height),
                    layout.bytesPerPixel())) {
    throw ImageDamaged();
  }

  const HeifImage image = decodeImage(primary, layout);
  throwIfCancelled(stop);
  const HeifPixels pixels = heifPixels(image, layout);
  if (layout.alpha && heif_image_handle_is_premultiplied_alpha(primary)) {
    divideByAlpha(pixels.plane, layout);
  }
  BitmapColor color;
  color.fileBits =
      layout.sample == SampleFormat::UInt16 && pixels.plane.bits < 16 ? pixels.plane.bits : 0;
  color.iccProfile = embeddedProfile(primary, layout.model);
  return Bitmap(pixels.plane.width, pixels.plane.height, layout, pixels.owner, pixels.plane.stride,
                std::move(color));
}

}  // namespace

std::unique_ptr<ImageReader> openHeif(ReadOnlyFile file) {
  return std::make_unique<HeifReader>(std::move(file));
}

}  // namespace vantrel
