#include "support/heif_maker.h"

#include <libheif/heif.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace vantrel::testing {
namespace {

template <auto Free>
struct HeifFree {
  template <typename Value>
  void operator()(Value* value) const {
    Free(value);
  }
};

template <typename Value, auto Free>
using Owned = std::unique_ptr<Value, HeifFree<Free>>;

using Image = Owned<heif_image, heif_image_release>;

void check(const heif_error& error) {
  if (error.code != heif_error_Ok) throw std::runtime_error(error.message);
}

void fillPlane(heif_image* image, heif_channel channel, const HeifSpec& spec, int first,
               int channels) {
  check(heif_image_add_plane(image, channel, spec.width, spec.height, spec.bits));
  int stride = 0;
  uint8_t* plane = heif_image_get_plane(image, channel, &stride);
  for (int y = 0; y < spec.height; ++y, plane += stride) {
    for (int i = 0; i < spec.width * channels; ++i) {
      const uint16_t value = spec.sample(i / channels, y, first + i % channels);
      if (spec.bits > 8) {
        reinterpret_cast<uint16_t*>(plane)[i] = value;
      } else {
        plane[i] = static_cast<uint8_t>(value);
      }
    }
  }
}

Image makeImage(const HeifSpec& spec) {
  heif_image* raw = nullptr;
  if (spec.gray) {
    check(heif_image_create(spec.width, spec.height, heif_colorspace_monochrome,
                            heif_chroma_monochrome, &raw));
  } else {
    const heif_chroma shallow =
        spec.alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB;
    const heif_chroma deep =
        spec.alpha ? heif_chroma_interleaved_RRGGBBAA_LE : heif_chroma_interleaved_RRGGBB_LE;
    check(heif_image_create(spec.width, spec.height, heif_colorspace_RGB,
                            spec.bits > 8 ? deep : shallow, &raw));
  }
  Image image(raw);
  if (spec.gray) {
    fillPlane(raw, heif_channel_Y, spec, 0, 1);
    if (spec.alpha) fillPlane(raw, heif_channel_Alpha, spec, 1, 1);
  } else {
    fillPlane(raw, heif_channel_interleaved, spec, 0, spec.alpha ? 4 : 3);
  }
  heif_image_set_premultiplied_alpha(raw, spec.premultiplied);
  if (!spec.profile.empty()) {
    check(heif_image_set_raw_color_profile(raw, "prof", spec.profile.data(), spec.profile.size()));
  }
  return image;
}

void addImage(heif_context* context, const HeifSpec& spec, bool primary) {
  heif_encoder* rawEncoder = nullptr;
  check(heif_context_get_encoder_for_format(context, heif_compression_HEVC, &rawEncoder));
  const Owned<heif_encoder, heif_encoder_release> encoder(rawEncoder);
  check(heif_encoder_set_lossless(rawEncoder, 1));
  check(heif_encoder_set_parameter_string(rawEncoder, "chroma", "444"));

  // Red, green and blue are coded as they are: a conversion would round.
  const Owned<heif_color_profile_nclx, heif_nclx_color_profile_free> nclx(
      heif_nclx_color_profile_alloc());
  nclx->color_primaries = static_cast<heif_color_primaries>(spec.primaries);
  nclx->transfer_characteristics = static_cast<heif_transfer_characteristics>(spec.transfer);
  nclx->matrix_coefficients =
      spec.gray ? heif_matrix_coefficients_ITU_R_BT_601_6 : heif_matrix_coefficients_RGB_GBR;
  nclx->full_range_flag = 1;
  const Owned<heif_encoding_options, heif_encoding_options_free> options(
      heif_encoding_options_alloc());
  options->output_nclx_profile = nclx.get();
  options->macOS_compatibility_workaround_no_nclx_profile = 0;
  options->image_orientation = static_cast<heif_orientation>(spec.orientation);

  const Image image = makeImage(spec);
  check(heif_image_set_nclx_color_profile(image.get(), nclx.get()));
  heif_image_handle* rawHandle = nullptr;
  check(heif_context_encode_image(context, image.get(), rawEncoder, options.get(), &rawHandle));
  const Owned<heif_image_handle, heif_image_handle_release> handle(rawHandle);
  if (primary) check(heif_context_set_primary_image(context, rawHandle));
  if (spec.thumbnail) {
    heif_image_handle* small = nullptr;
    check(heif_context_encode_thumbnail(context, image.get(), rawHandle, rawEncoder, options.get(),
                                        8, &small));
    heif_image_handle_release(small);
  }
  if (!spec.exif.empty()) {
    check(heif_context_add_exif_metadata(context, rawHandle, spec.exif.data(),
                                         static_cast<int>(spec.exif.size())));
  }
}

}  // namespace

bool canMakeHeif() {
  return heif_have_encoder_for_format(heif_compression_HEVC) != 0;
}

void saveHeif(const std::filesystem::path& path, const std::vector<HeifSpec>& images) {
  const Owned<heif_context, heif_context_free> context(heif_context_alloc());
  for (const HeifSpec& spec : images) {
    addImage(context.get(), spec, &spec == &images.front());
  }
  check(heif_context_write_to_file(context.get(), path.c_str()));
}

}  // namespace vantrel::testing
