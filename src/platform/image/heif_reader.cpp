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
    made.seek = [](int64_t position, void* self) {
      static_cast<FileView*>(self)->position = static_cast<uint64_t>(position);
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
  [[nodiscard]] int imageCount() override;
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
  m_readable =
      heif_context_read_from_reader(m_context.get(), FileView::callbacks(), &m_view, nullptr)
          .code == heif_error_Ok;
}

int HeifReader::imageCount() {
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
  if (layout.model == ColorModel::Gray) return heif_chroma_monochrome;
  if (layout.sample == SampleFormat::UInt8) {
    return layout.alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB;
  }
  if constexpr (std::endian::native == std::endian::little) {
    return layout.alpha ? heif_chroma_interleaved_RRGGBBAA_LE : heif_chroma_interleaved_RRGGBB_LE;
  } else {
    return layout.alpha ? heif_chroma_interleaved_RRGGBBAA_BE : heif_chroma_interleaved_RRGGBB_BE;
  }
}

HeifImage decodeImage(const heif_image_handle* handle, const PixelLayout& layout) {
  const HeifOptions options(heif_decoding_options_alloc());
  if (!options) throw std::bad_alloc();
  options->strict_decoding = 1;
  heif_image* image = nullptr;
  const heif_colorspace space =
      layout.model == ColorModel::Gray ? heif_colorspace_monochrome : heif_colorspace_RGB;
  check(heif_decode_image(handle, &image, space, chromaOf(layout), options.get()));
  HeifImage owner(image, heif_image_release);
  heif_error warning;
  if (heif_image_get_decoding_warnings(image, 0, &warning, 1) > 0) throw ImageDamaged();
  return owner;
}

/// A plane of decoded samples, `bits` of each in use.
struct Plane {
  uint8_t* bytes;
  size_t stride;
  int64_t width, height;
  int bits;
};

Plane planeOf(heif_image* image, heif_channel channel, int channels) {
  int stride = 0;
  uint8_t* bytes = heif_image_get_plane(image, channel, &stride);
  const Plane plane{bytes, static_cast<size_t>(stride), heif_image_get_width(image, channel),
                    heif_image_get_height(image, channel),
                    heif_image_get_bits_per_pixel_range(image, channel)};
  const int sampleBytes = plane.bits > 8 ? 2 : 1;
  if (!bytes || plane.bits < 1 || plane.bits > 16 || plane.width < 1 || plane.height < 1 ||
      plane.width * channels * sampleBytes > stride) {
    throw ImageDamaged();
  }
  return plane;
}

/// `bits` spread over the whole range of Sample.
template <typename Sample>
Sample spread(uint32_t value, int bits) {
  constexpr uint32_t kFull = std::numeric_limits<Sample>::max();
  const uint32_t most = (1U << bits) - 1;
  return static_cast<Sample>((std::min(value, most) * kFull + most / 2) / most);
}

void spreadOverSixteenBits(const Plane& plane, int channels) {
  if (plane.bits == 16) return;
  for (int64_t y = 0; y < plane.height; ++y) {
    auto* sample = reinterpret_cast<uint16_t*>(plane.bytes + static_cast<size_t>(y) * plane.stride);
    std::for_each_n(sample, plane.width * channels,
                    [&plane](uint16_t& s) { s = spread<uint16_t>(s, plane.bits); });
  }
}

template <typename Sample>
void divideByAlpha(const Plane& plane, int colors) {
  constexpr uint32_t kFull = std::numeric_limits<Sample>::max();
  for (int64_t y = 0; y < plane.height; ++y) {
    auto* pixel = reinterpret_cast<Sample*>(plane.bytes + static_cast<size_t>(y) * plane.stride);
    for (int64_t x = 0; x < plane.width; ++x, pixel += colors + 1) {
      const uint32_t alpha = pixel[colors];
      for (int c = 0; c < colors; ++c) {
        const uint32_t color = std::min<uint32_t>(pixel[c], alpha);
        pixel[c] =
            alpha == 0 ? Sample{0} : static_cast<Sample>((color * kFull + alpha / 2) / alpha);
      }
    }
  }
}

template <typename Sample>
void interleave(const Plane& from, Sample* to, int64_t step) {
  for (int64_t y = 0; y < from.height; ++y) {
    const uint8_t* row = from.bytes + static_cast<size_t>(y) * from.stride;
    for (int64_t x = 0; x < from.width; ++x, to += step) {
      const uint32_t value = from.bits > 8 ? reinterpret_cast<const uint16_t*>(row)[x] : row[x];
      *to = spread<Sample>(value, from.bits);
    }
  }
}

/// The pixels of a decoded image as one interleaved plane, and what keeps them alive.
struct Pixels {
  Plane plane;
  std::shared_ptr<const std::byte> owner;
};

Pixels colorPixels(const HeifImage& image, const PixelLayout& layout) {
  const Plane plane = planeOf(image.get(), heif_channel_interleaved, layout.channels());
  if ((plane.bits > 8) != (layout.sample == SampleFormat::UInt16)) throw ImageDamaged();
  if (plane.bits > 8) spreadOverSixteenBits(plane, layout.channels());
  // The bitmap is the decoder's own memory: no copy is made.
  return {plane, {image, reinterpret_cast<const std::byte*>(plane.bytes)}};
}

Pixels grayPixels(const HeifImage& image, const PixelLayout& layout) {
  Plane gray = planeOf(image.get(), heif_channel_Y, 1);
  if ((gray.bits > 8) != (layout.sample == SampleFormat::UInt16)) throw ImageDamaged();
  if (!layout.alpha) {
    if (gray.bits > 8) spreadOverSixteenBits(gray, 1);
    return {gray, {image, reinterpret_cast<const std::byte*>(gray.bytes)}};
  }
  const Plane alpha = planeOf(image.get(), heif_channel_Alpha, 1);
  if (alpha.width != gray.width || alpha.height != gray.height) throw ImageDamaged();
  if (!Bitmap::fits(static_cast<uint64_t>(gray.width), static_cast<uint64_t>(gray.height),
                    layout.bytesPerPixel())) {
    throw ImageDamaged();
  }
  const size_t stride =
      static_cast<size_t>(gray.width) * static_cast<size_t>(layout.bytesPerPixel());
  const std::shared_ptr<uint8_t> pixels(new uint8_t[stride * static_cast<size_t>(gray.height)],
                                        std::default_delete<uint8_t[]>());
  if (gray.bits > 8) {
    auto* samples = reinterpret_cast<uint16_t*>(pixels.get());
    interleave(gray, samples, 2);
    interleave(alpha, samples + 1, 2);
  } else {
    interleave(gray, pixels.get(), 2);
    interleave(alpha, pixels.get() + 1, 2);
  }
  gray.bytes = pixels.get();
  gray.stride = stride;
  return {gray, {pixels, reinterpret_cast<const std::byte*>(pixels.get())}};
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
  const Pixels pixels =
      layout.model == ColorModel::Gray ? grayPixels(image, layout) : colorPixels(image, layout);
  if (layout.alpha && heif_image_handle_is_premultiplied_alpha(primary)) {
    if (layout.sample == SampleFormat::UInt8) {
      divideByAlpha<uint8_t>(pixels.plane, layout.colorChannels());
    } else {
      divideByAlpha<uint16_t>(pixels.plane, layout.colorChannels());
    }
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
