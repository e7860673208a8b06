#pragma once

#include <optional>
#include <span>

#include "platform/movie/picture_orientation.h"
#include "platform/movie/plane_resampler.h"
#include "platform/movie/sample_grid.h"

namespace vantrel {

/// Brings the chosen part of the luma plane, or of both chroma planes, into the output: as it
/// stands where the samples of the output are samples of the source, resampled and converted
/// elsewhere. One thread at a time.
class PlaneCrop final {
 public:
  struct Settings {
    /// In samples.
    int sourceWidth = 0, sourceHeight = 0;
    AxisMapping x, y;
    PictureOrientation orientation;
    SampleFormat source, target;
    /// Bits of the samples as they were before they came here, at most the source's depth.
    int significantBits = 8;
    bool isChroma = false;
  };

  explicit PlaneCrop(const Settings& settings);

  /// Of one target plane, as it lies in the output.
  [[nodiscard]] PlaneShape outputShape() const;
  /// The part of `source` that is the output plane already; none if anything must be done to it.
  [[nodiscard]] std::optional<PlaneView> unchanged(const PlaneView& source) const;
  /// One source and target, or two for chroma, of which the first is Cb.
  void write(std::span<const PlaneView> sources, std::span<const PlaneTarget> targets);

 private:
  [[nodiscard]] bool isExact() const {
    return m_settings.x.firstSample && m_settings.y.firstSample;
  }
  /// What the resampler or the turn reads.
  [[nodiscard]] PlaneView usedPart(const PlaneView& source) const;
  /// The shape before the turn.
  [[nodiscard]] PlaneShape croppedShape() const;
  [[nodiscard]] bool needsThreePlanes() const;
  [[nodiscard]] ResamplingStep resamplingStep() const;
  void resample(std::span<const PlaneView> sources, std::span<const PlaneTarget> targets);

  Settings m_settings;
  std::optional<PlaneResampler> m_resampler;
  /// Cropped planes that are yet to be turned.
  std::vector<ScratchPlane> m_cropped;
  /// Stands in for luma where chroma is converted and luma is not.
  std::optional<ScratchPlane> m_unusedLuma;
};

}  // namespace vantrel
