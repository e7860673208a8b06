#include "platform/movie/cropping_plan.h"

#include <algorithm>

namespace vantrel {
namespace {

using Family = PlanarFormat::Family;

/// Of the 4:4:4 made of RGB: what it rounds is lost among the output's bits.
constexpr int kConvertedDepth = 16;
/// The output is 4:2:0.
constexpr int kOutputChromaShift = 1;

void attach(AVFrame& output, int index, AvBufferPtr buffer, uint8_t* data, ptrdiff_t stride) {
  output.buf[index] = buffer.release();
  output.data[index] = data;
  output.linesize[index] = static_cast<int>(stride);
}

/// A share in what holds a plane of `frame`; null if the frame is not counted.
AvBufferPtr sharedBuffer(const AVFrame& frame, int plane) {
  if (plane < 0) return nullptr;
  // It looks only; FFmpeg 5.1 does not say so.
  const AVBufferRef* buffer = av_frame_get_plane_buffer(const_cast<AVFrame*>(&frame), plane);
  return buffer ? owned<AvBufferPtr>(av_buffer_ref(buffer)) : nullptr;
}

}  // namespace

FrameKind FrameKind::of(const AVFrame& frame) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  return {format, frame.width, frame.height, usesFullRange(format, frame.color_range),
          chromaSitingOf(frame.chroma_location)};
}

CroppingPlan::CroppingPlan(const FrameKind& kind, const VideoOutputSettings& settings,
                           const SourceRegion& region, PictureSize naturalSize)
    : m_kind(kind),
      m_settings(settings),
      m_unpacker(kind.format, kind.width, kind.height),
      m_luma(planeSettings(region, naturalSize, false)),
      m_lumaPool(m_luma.outputShape()),
      m_chromaPool({settings.width / 2, settings.height / 2, settings.tenBit ? 2 : 1}) {
  if (m_unpacker.format().family == Family::Rgb) makeRgbConversion();
  if (m_unpacker.format().family != Family::Gray)
    m_chroma.emplace(planeSettings(region, naturalSize, true));
}

PlaneCrop::Settings CroppingPlan::planeSettings(const SourceRegion& region, PictureSize naturalSize,
                                                bool isChroma) const {
  const PlanarFormat& format = m_unpacker.format();
  const bool isConverted = format.family == Family::Rgb;
  const int shiftX = isChroma ? format.chromaShiftX : 0;
  const int shiftY = isChroma ? format.chromaShiftY : 0;

  PlaneCrop::Settings plane;
  plane.sourceWidth = AV_CEIL_RSHIFT(m_kind.width, shiftX);
  plane.sourceHeight = AV_CEIL_RSHIFT(m_kind.height, shiftY);
  plane.orientation = region.orientation;
  plane.source = isConverted ? SampleFormat{kConvertedDepth, false}
                             : SampleFormat{format.depth, m_kind.isFullRange};
  plane.target = {m_settings.tenBit ? 10 : 8, false};
  plane.significantBits = format.depth;
  plane.isChroma = isChroma;

  const int outputShift = isChroma ? kOutputChromaShift : 0;
  SampleGrid alongX = horizontalChromaGrid(m_settings.chromaSiting, outputShift);
  SampleGrid alongY = verticalChromaGrid(m_settings.chromaSiting, outputShift);
  if (region.orientation.transposes) std::swap(alongX, alongY);
  plane.x =
      mapAxis({region.x, region.width, region.orientation.flipsX, m_kind.width / naturalSize.width},
              horizontalChromaGrid(m_kind.siting, shiftX), plane.sourceWidth, alongX);
  plane.y = mapAxis(
      {region.y, region.height, region.orientation.flipsY, m_kind.height / naturalSize.height},
      verticalChromaGrid(m_kind.siting, shiftY), plane.sourceHeight, alongY);
  return plane;
}

void CroppingPlan::makeRgbConversion() {
  ResamplingStep step;
  step.content = ResamplingStep::Content::RgbToYuv;
  step.sourceWidth = step.targetWidth = m_kind.width;
  step.sourceHeight = step.targetHeight = m_kind.height;
  step.source = {m_unpacker.format().depth, true};
  step.target = {kConvertedDepth, false};
  step.matrix = m_settings.matrixForRgb;
  m_rgbConversion.emplace(step);
  for (int i = 0; i < 3; ++i)
    m_converted.emplace_back(PlaneShape{m_kind.width, m_kind.height, step.target.bytesPerSample()});
}

void CroppingPlan::crop(const AVFrame& frame, AVFrame& output) {
  const PlanarPicture picture = lumaAndChroma(frame);
  cropPlanes(frame, picture, 0, 1, output);
  if (m_chroma)
    cropPlanes(frame, picture, 1, 2, output);
  else
    fillChroma(output);
}

PlanarPicture CroppingPlan::lumaAndChroma(const AVFrame& frame) {
  const PlanarPicture picture = m_unpacker.unpack(frame);
  if (!m_rgbConversion) return picture;
  m_rgbConversion->process(
      picture.planes,
      std::array{m_converted[0].target(), m_converted[1].target(), m_converted[2].target()});
  PlanarPicture converted;
  std::transform(m_converted.begin(), m_converted.end(), converted.planes.begin(),
                 [](const ScratchPlane& plane) { return plane.view(); });
  return converted;
}

/// Crops the planes from `first` on, all of one kind.
void CroppingPlan::cropPlanes(const AVFrame& frame, const PlanarPicture& picture, int first,
                              int count, AVFrame& output) {
  PlaneCrop& crop = first == 0 ? m_luma : *m_chroma;
  PlanePool& pool = first == 0 ? m_lumaPool : m_chromaPool;
  const auto sources =
      std::span(picture.planes).subspan(static_cast<size_t>(first), static_cast<size_t>(count));
  std::array<PlaneTarget, 2> targets;
  bool areShared = true;
  for (int i = 0; i < count; ++i) {
    const auto index = static_cast<size_t>(i);
    const auto part = crop.unchanged(sources[index]);
    auto buffer = part ? sharedBuffer(frame, picture.framePlane[index + static_cast<size_t>(first)])
                       : nullptr;
    areShared = areShared && buffer;
    if (!areShared) break;
    attach(output, first + i, std::move(buffer), const_cast<uint8_t*>(part->data), part->stride);
  }
  if (areShared) return;
  for (int i = 0; i < count; ++i) {
    auto [buffer, target] = pool.take();
    targets[static_cast<size_t>(i)] = target;
    av_buffer_unref(&output.buf[first + i]);
    attach(output, first + i, std::move(buffer), target.data, target.stride);
  }
  crop.write(sources, std::span(targets).first(sources.size()));
}

void CroppingPlan::fillChroma(AVFrame& output) {
  const PlaneShape& shape = m_chromaPool.shape();
  auto [buffer, target] = m_chromaPool.take();
  for (int y = 0; y < shape.height; ++y) {
    if (shape.bytesPerSample == 1)
      std::fill_n(target.row(y), shape.width, uint8_t{128});
    else
      std::fill_n(reinterpret_cast<uint16_t*>(target.row(y)), shape.width, uint16_t{512});
  }
  attach(output, 2, owned<AvBufferPtr>(av_buffer_ref(buffer.get())), target.data, target.stride);
  attach(output, 1, std::move(buffer), target.data, target.stride);
}

}  // namespace vantrel
