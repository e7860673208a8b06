#include "platform/movie/plane_crop.h"

#include <array>
#include <utility>

#include "platform/movie/plane_turn.h"

namespace vantrel {

PlaneCrop::PlaneCrop(const Settings& settings) : m_settings(settings) {
  if (isExact() && settings.source == settings.target) return;
  m_resampler.emplace(resamplingStep());
  if (needsThreePlanes()) m_unusedLuma.emplace(croppedShape());
  if (settings.orientation.isUpright()) return;
  for (int i = 0; i < (settings.isChroma ? 2 : 1); ++i)
    m_cropped.emplace_back(croppedShape());
}

PlaneShape PlaneCrop::outputShape() const {
  PlaneShape shape = croppedShape();
  if (m_settings.orientation.transposes) std::swap(shape.width, shape.height);
  return shape;
}

std::optional<PlaneView> PlaneCrop::unchanged(const PlaneView& source) const {
  // Encoders and other readers of frames need not expect rows that run upward.
  if (m_resampler || !m_settings.orientation.isUpright() || source.stride < 0) return {};
  return usedPart(source);
}

void PlaneCrop::write(std::span<const PlaneView> sources, std::span<const PlaneTarget> targets) {
  if (m_resampler && m_cropped.empty()) return resample(sources, targets);
  std::array<PlaneTarget, 2> cropped;
  for (size_t i = 0; i < m_cropped.size(); ++i)
    cropped[i] = m_cropped[i].target();
  if (m_resampler) resample(sources, std::span(cropped).first(m_cropped.size()));
  for (size_t i = 0; i < targets.size(); ++i)
    turnPlane(m_resampler ? m_cropped[i].view() : usedPart(sources[i]), m_settings.orientation,
              targets[i]);
}

PlaneView PlaneCrop::usedPart(const PlaneView& source) const {
  if (!isExact()) return source;
  return source.part(*m_settings.x.firstSample, *m_settings.y.firstSample, m_settings.x.count,
                     m_settings.y.count);
}

PlaneShape PlaneCrop::croppedShape() const {
  return {m_settings.x.count, m_settings.y.count, m_settings.target.bytesPerSample()};
}

/// Chroma of full range lies about a centre of its own, which zimg knows only beside luma.
bool PlaneCrop::needsThreePlanes() const {
  return m_settings.isChroma && m_settings.source.isFullRange != m_settings.target.isFullRange;
}

ResamplingStep PlaneCrop::resamplingStep() const {
  const AxisMapping &x = m_settings.x, &y = m_settings.y;
  ResamplingStep step;
  step.content =
      needsThreePlanes() ? ResamplingStep::Content::Yuv : ResamplingStep::Content::OnePlane;
  step.sourceWidth = isExact() ? x.count : m_settings.sourceWidth;
  step.sourceHeight = isExact() ? y.count : m_settings.sourceHeight;
  step.source = m_settings.source;
  if (!isExact()) step.region = {x.start, y.start, x.length, y.length};
  step.targetWidth = x.count;
  step.targetHeight = y.count;
  step.target = m_settings.target;
  step.dithers = m_settings.significantBits > m_settings.target.depth;
  return step;
}

void PlaneCrop::resample(std::span<const PlaneView> sources, std::span<const PlaneTarget> targets) {
  if (m_unusedLuma) {
    const PlaneView cb = usedPart(sources[0]), cr = usedPart(sources[1]);
    m_resampler->process(std::array{cb, cb, cr},
                         std::array{m_unusedLuma->target(), targets[0], targets[1]});
    return;
  }
  for (size_t i = 0; i < targets.size(); ++i)
    m_resampler->process(std::array{usedPart(sources[i])}, std::array{targets[i]});
}

}  // namespace vantrel
