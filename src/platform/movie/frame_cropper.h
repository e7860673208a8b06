#pragma once

#include <memory>

#include "platform/movie/av_ptr.h"
#include "platform/movie/movie_reader.h"
#include "platform/movie/picture_orientation.h"

namespace vantrel {

class CroppingPlan;

/// Turns decoded frames into cropped 4:2:0 pictures of video range, in one step. Luma samples are
/// those of the source wherever depth, range and pixel shape allow it; chroma is resampled only
/// where its grid does not fall on the output's, with the siting of both honoured. An unturned crop
/// at even offsets of a frame that is 4:2:0 of the right depth, range and siting copies nothing:
/// the result refers to the frame's own planes. Alpha is dropped, an interlaced frame is taken for
/// a progressive one, and YUV keeps its matrix. One thread at a time.
class FrameCropper final {
 public:
  /// `naturalSize` is the size that the frames have with square pixels, in `settings.transform`'s
  /// source space. Throws std::invalid_argument unless these settings have a `sourceRegion`.
  FrameCropper(const VideoOutputSettings& settings, PictureSize naturalSize);
  ~FrameCropper();

  /// The cropped picture: AV_PIX_FMT_YUV420P or YUV420P10, of the output's size, chroma_location
  /// and color_range (AVCOL_RANGE_MPEG) set, time stamps and colour tags those of `frame`, no side
  /// data. Where the frame is RGB, its matrix is `matrixForRgb`. Frames may differ in format and
  /// size; each is brought to `naturalSize`. Throws Failure for a pixel format or matrix that
  /// cannot be converted.
  [[nodiscard]] AvFramePtr crop(const AVFrame& frame);

  /// Whether a frame of this pixel format can be cropped.
  [[nodiscard]] static bool accepts(AVPixelFormat format);

 private:
  VideoOutputSettings m_settings;
  PictureSize m_naturalSize;
  SourceRegion m_region;
  /// For frames like the last one; replaced when a frame of another kind comes.
  std::unique_ptr<CroppingPlan> m_plan;
};

}  // namespace vantrel
