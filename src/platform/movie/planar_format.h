#pragma once

#include <optional>

#include "platform/movie/av_ptr.h"
#include "platform/movie/plane_resampler.h"
#include "platform/movie/video_color.h"

namespace vantrel {

/// How a picture lies once each component has a plane of its own, alpha apart.
struct PlanarFormat {
  enum class Family { Gray, Yuv, Rgb };

  Family family = Family::Yuv;
  /// Of every component. Fewer than eight bits are spread over eight.
  int depth = 8;
  /// A chroma sample stands for 2^shift pixels.
  int chromaShiftX = 0, chromaShiftY = 0;

  [[nodiscard]] int planeCount() const { return family == Family::Gray ? 1 : 3; }
  friend bool operator==(const PlanarFormat&, const PlanarFormat&) = default;
};

/// None for formats whose samples are not plain integers in memory that a processor reads: frames
/// on a device, sensor mosaics, floating point, XYZ.
[[nodiscard]] std::optional<PlanarFormat> planarFormat(AVPixelFormat format);
/// Of a frame that has pixels. Throws Failure where there is none.
[[nodiscard]] PlanarFormat requiredPlanarFormat(const AVFrame& frame);

/// Whether the samples use the full range: as tagged, and where nothing is tagged, RGB and gray do
/// and YUV does not. RGB does whatever its tag says, for few decoders tag it with care.
[[nodiscard]] bool usesFullRange(AVPixelFormat format, AVColorRange range);

/// Left where the frame does not say.
[[nodiscard]] ChromaSiting chromaSitingOf(AVChromaLocation location);
[[nodiscard]] AVChromaLocation chromaLocationOf(ChromaSiting siting);

}  // namespace vantrel
