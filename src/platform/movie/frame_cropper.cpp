#include "platform/movie/frame_cropper.h"

#include <stdexcept>

#include "platform/movie/cropping_plan.h"

namespace vantrel {
namespace {

SourceRegion regionOrThrow(const VideoOutputSettings& settings, PictureSize naturalSize) {
  if (const auto region = sourceRegion(settings, naturalSize)) return *region;
  throw std::invalid_argument("The picture's part or turn cannot be cropped.");
}

void copyTimes(const AVFrame& source, AVFrame& target) {
  target.pts = source.pts;
  target.pkt_dts = source.pkt_dts;
  target.best_effort_timestamp = source.best_effort_timestamp;
  target.time_base = source.time_base;
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
  target.duration = source.duration;
#else
  target.pkt_duration = source.pkt_duration;
#endif
}

void copyColorTags(const AVFrame& source, AVFrame& target) {
  target.color_primaries = source.color_primaries;
  target.color_trc = source.color_trc;
  target.colorspace = source.colorspace;
}

}  // namespace

FrameCropper::FrameCropper(const VideoOutputSettings& settings, PictureSize naturalSize)
    : m_settings(settings),
      m_naturalSize(naturalSize),
      m_region(regionOrThrow(settings, naturalSize)) {}

FrameCropper::~FrameCropper() = default;

AvFramePtr FrameCropper::crop(const AVFrame& frame) {
  const PlanarFormat planar = requiredPlanarFormat(frame);
  const FrameKind kind = FrameKind::of(frame);
  if (!m_plan || m_plan->kind() != kind) {
    m_plan.reset();
    m_plan = std::make_unique<CroppingPlan>(kind, m_settings, m_region, m_naturalSize);
  }
  AvFramePtr output = makeFrame();
  output->format = m_settings.tenBit ? AV_PIX_FMT_YUV420P10 : AV_PIX_FMT_YUV420P;
  output->width = m_settings.width;
  output->height = m_settings.height;
  output->sample_aspect_ratio = {1, 1};
  copyTimes(frame, *output);
  copyColorTags(frame, *output);
  if (planar.family == PlanarFormat::Family::Rgb)
    output->colorspace = static_cast<AVColorSpace>(m_settings.matrixForRgb);
  output->color_range = AVCOL_RANGE_MPEG;
  output->chroma_location = chromaLocationOf(m_settings.chromaSiting);
  m_plan->crop(frame, *output);
  return output;
}

bool FrameCropper::accepts(AVPixelFormat format) {
  return planarFormat(format).has_value();
}

}  // namespace vantrel
