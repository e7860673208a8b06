#pragma once

#include <array>
#include <optional>

#include "platform/movie/picture_unpacker.h"
#include "platform/movie/plane_crop.h"

namespace vantrel {

/// What of a frame decides how it is cropped.
struct FrameKind {
  AVPixelFormat format = AV_PIX_FMT_NONE;
  int width = 0, height = 0;
  bool isFullRange = false;
  ChromaSiting siting = ChromaSiting::Left;

  [[nodiscard]] static FrameKind of(const AVFrame& frame);
  friend bool operator==(const FrameKind&, const FrameKind&) = default;
};

/// All that is prepared once to crop frames of one kind. One thread at a time.
class CroppingPlan final {
 public:
  /// `kind` has a format with a planarFormat; `region` is the one of `settings` in pictures of
  /// `naturalSize`. Throws Failure.
  CroppingPlan(const FrameKind& kind, const VideoOutputSettings& settings,
               const SourceRegion& region, PictureSize naturalSize);

  [[nodiscard]] const FrameKind& kind() const { return m_kind; }
  /// Gives `output`, which is empty, the planes of the cropped picture: data, linesize and buf.
  void crop(const AVFrame& frame, AVFrame& output);

 private:
  [[nodiscard]] PlaneCrop::Settings planeSettings(const SourceRegion& region,
                                                  PictureSize naturalSize, bool isChroma) const;
  void makeRgbConversion();
  [[nodiscard]] PlanarPicture lumaAndChroma(const AVFrame& frame);
  void cropPlanes(const AVFrame& frame, const PlanarPicture& picture, int first, int count,
                  AVFrame& output);
  void fillChroma(AVFrame& output);

  const FrameKind m_kind;
  const VideoOutputSettings m_settings;
  PictureUnpacker m_unpacker;
  /// For RGB: 4:4:4 of the same size, from which the rest goes on as for YUV.
  std::optional<PlaneResampler> m_rgbConversion;
  std::vector<ScratchPlane> m_converted;
  /// Luma, and chroma where the source has any.
  PlaneCrop m_luma;
  std::optional<PlaneCrop> m_chroma;
  PlanePool m_lumaPool, m_chromaPool;
};

}  // namespace vantrel
