#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/movie/av_ptr.h"
#include "platform/movie/encoder_candidates.h"
#include "platform/movie/movie_writer.h"

namespace vantrel {

/// One encoder at work. Frames go in, and packets come out some frames later. One thread at a time.
class VideoEncoder final {
 public:
  /// The first of the candidates that works. Throws MovieError for `file`, with the last one's
  /// reason, if none does.
  [[nodiscard]] static VideoEncoder open(const std::filesystem::path& file,
                                         const VideoInputSettings& settings,
                                         const std::vector<EncoderCandidate>& candidates);

  [[nodiscard]] const std::string& name() const { return m_candidate.setup.encoder; }
  /// Of the stream that the packets make. Their times count in `timeBase`.
  [[nodiscard]] const AVCodecParameters& parameters() const { return *m_filter->par_out; }
  [[nodiscard]] AVRational timeBase() const { return {1, m_settings.timescale}; }

  /// Takes a picture of the settings' size, YUV420P or for HDR YUV420P10, whose `pts` counts in
  /// `timeBase`. To be called until `receive` has no more, again. Throws MovieError.
  void send(AvFramePtr picture, bool isKeyFrame);
  /// No more pictures come; those inside come out.
  void sendEnd();
  /// The next packet; null if more pictures are needed or, after the end, none is left. Throws
  /// MovieError.
  [[nodiscard]] AvPacketPtr receive();

 private:
  /// Throws MovieError if the candidate does not open.
  VideoEncoder(std::filesystem::path file, const VideoInputSettings& settings,
               EncoderCandidate candidate);

  /// Whether it opens and encodes a picture: drivers of hardware promise more than they keep.
  [[nodiscard]] static bool works(const VideoInputSettings& settings,
                                  const EncoderCandidate& candidate);
  void setUp(AVCodecContext& context) const;
  void attachDevice(AVCodecContext& context);
  void attachSurfaces(AVCodecContext& context, AVBufferRef* device) const;
  void openFilter();
  [[nodiscard]] std::string filterChain() const;
  [[nodiscard]] AvFramePtr uploaded(const AVFrame& picture) const;
  /// `code` itself; throws MovieError if it is negative.
  int checked(int code) const;

  std::filesystem::path m_file;
  VideoInputSettings m_settings;
  EncoderCandidate m_candidate;
  /// Of the pictures inside the encoder.
  int m_width = 0, m_height = 0;
  AvCodecContextPtr m_context;
  /// Takes away parameter sets in band, and crops padded pictures.
  AvBsfPtr m_filter;
  int64_t m_pictures = 0;
  bool m_hasEnded = false;
};

}  // namespace vantrel
