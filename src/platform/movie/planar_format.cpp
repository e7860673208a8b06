#include "platform/movie/planar_format.h"

#include <QtGlobal>

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <string>

#include "base/failure.h"
#include "platform/desktop/user_text.h"

namespace vantrel {
namespace {

constexpr uint64_t kUnreadableFlags =
    AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_BAYER | AV_PIX_FMT_FLAG_FLOAT;

/// Formats that their descriptors do not describe as far as is needed here.
bool isBeyondDescription(AVPixelFormat format) {
  return format == AV_PIX_FMT_XYZ12LE || format == AV_PIX_FMT_XYZ12BE ||
         format == AV_PIX_FMT_UYYVYY411;
}

PlanarFormat::Family familyOf(const AVPixFmtDescriptor& descriptor) {
  if (descriptor.flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL))
    return PlanarFormat::Family::Rgb;
  return descriptor.nb_components >= 3 ? PlanarFormat::Family::Yuv : PlanarFormat::Family::Gray;
}

bool isJpegFormat(AVPixelFormat format) {
  return format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_YUVJ422P ||
         format == AV_PIX_FMT_YUVJ444P || format == AV_PIX_FMT_YUVJ440P ||
         format == AV_PIX_FMT_YUVJ411P;
}

}  // namespace

std::optional<PlanarFormat> planarFormat(AVPixelFormat format) {
  const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
  if (!descriptor || descriptor->flags & kUnreadableFlags || isBeyondDescription(format)) return {};
  PlanarFormat planar;
  planar.family = familyOf(*descriptor);
  planar.chromaShiftX = descriptor->log2_chroma_w;
  planar.chromaShiftY = descriptor->log2_chroma_h;
  const int count = std::min<int>(descriptor->nb_components, planar.planeCount());
  int shallowest = 16;
  for (int i = 0; i < count; ++i) {
    const AVComponentDescriptor& component = descriptor->comp[i];
    if (component.depth < 1 || component.shift < 0 || component.depth + component.shift > 16)
      return {};
    shallowest = std::min(shallowest, component.depth);
    planar.depth = std::max(planar.depth, component.depth);
  }
  if (count == 0 || (planar.depth > 8 && shallowest != planar.depth)) return {};
  return planar;
}

PlanarFormat requiredPlanarFormat(const AVFrame& frame) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  const auto planar = planarFormat(format);
  if (planar && frame.width > 0 && frame.height > 0) return *planar;
  const char* name = av_get_pix_fmt_name(format);
  throw Failure(
      failureText(QT_TRANSLATE_NOOP("Failure", "The video's pictures cannot be converted: %1"),
                  name ? name : "no pixel format"));
}

bool usesFullRange(AVPixelFormat format, AVColorRange range) {
  const auto planar = planarFormat(format);
  if (isJpegFormat(format) || (planar && planar->family == PlanarFormat::Family::Rgb)) return true;
  if (range != AVCOL_RANGE_UNSPECIFIED) return range == AVCOL_RANGE_JPEG;
  return planar && planar->family == PlanarFormat::Family::Gray;
}

ChromaSiting chromaSitingOf(AVChromaLocation location) {
  switch (location) {
    case AVCHROMA_LOC_CENTER:
      return ChromaSiting::Center;
    case AVCHROMA_LOC_TOPLEFT:
      return ChromaSiting::TopLeft;
    case AVCHROMA_LOC_TOP:
      return ChromaSiting::Top;
    case AVCHROMA_LOC_BOTTOMLEFT:
      return ChromaSiting::BottomLeft;
    case AVCHROMA_LOC_BOTTOM:
      return ChromaSiting::Bottom;
    case AVCHROMA_LOC_LEFT:
    case AVCHROMA_LOC_UNSPECIFIED:
    case AVCHROMA_LOC_NB:
      break;
  }
  return ChromaSiting::Left;
}

AVChromaLocation chromaLocationOf(ChromaSiting siting) {
  switch (siting) {
    case ChromaSiting::Center:
      return AVCHROMA_LOC_CENTER;
    case ChromaSiting::TopLeft:
      return AVCHROMA_LOC_TOPLEFT;
    case ChromaSiting::Top:
      return AVCHROMA_LOC_TOP;
    case ChromaSiting::BottomLeft:
      return AVCHROMA_LOC_BOTTOMLEFT;
    case ChromaSiting::Bottom:
      return AVCHROMA_LOC_BOTTOM;
    case ChromaSiting::Left:
      break;
  }
  return AVCHROMA_LOC_LEFT;
}

}  // namespace vantrel
