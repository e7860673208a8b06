#include "platform/movie/encoder_candidates.h"

#include <string>
#include <thread>
#include <utility>

namespace vantrel {
namespace {

/// The largest coding tree unit of HEVC: libx265 takes no picture smaller than its own.
constexpr int kLargestCodingTreeUnit = 64;
/// What all hardware with B-frames manages.
constexpr int kHardwareBFrames = 2;

using Options = std::vector<std::pair<std::string, std::string>>;

/// With the rates that software is given.
EncoderCandidate hardware(const VideoInputSettings& settings, const EncoderOptions& software,
                          const std::string& maker, Options options) {
  const bool isHevc = settings.codec == VideoCodec::Hevc;
  options.emplace_back("profile", settings.isHdr ? "main10" : isHevc ? "main" : "high");
  EncoderCandidate candidate;
  candidate.setup = software;
  candidate.setup.encoder = (isHevc ? "hevc_" : "h264_") + maker;
  candidate.setup.options = std::move(options);
  candidate.isHardware = true;
  candidate.bFrames = kHardwareBFrames;
  return candidate;
}

std::vector<EncoderCandidate> hardwareCandidates(const VideoInputSettings& settings,
                                                 const EncoderOptions& software) {
  std::vector<EncoderCandidate> candidates;
  candidates.push_back(hardware(settings, software, "videotoolbox", {{"allow_sw", "0"}}));

  const Options nvenc = {{"preset", "p4"}, {"rc", "vbr"}, {"forced-idr", "1"}};
  candidates.push_back(hardware(settings, software, "nvenc", nvenc));
  // Older generations make HEVC without B-frames only.
  candidates.push_back(hardware(settings, software, "nvenc", nvenc));
  candidates.back().bFrames = 0;

  candidates.push_back(
      hardware(settings, software, "qsv",
               {{"preset", "medium"}, {"forced_idr", "1"}, {"idr_interval", "0"}}));

  candidates.push_back(
      hardware(settings, software, "vaapi", {{"rc_mode", "VBR"}, {"idr_interval", "0"}}));
  candidates.back().device = AV_HWDEVICE_TYPE_VAAPI;
  candidates.back().deviceFormat = AV_PIX_FMT_VAAPI;
  return candidates;
}

}  // namespace

std::vector<EncoderCandidate> encoderCandidates(const VideoInputSettings& settings) {
  const auto cores = static_cast<int>(std::thread::hardware_concurrency());
  EncoderCandidate software;
  software.setup = softwareEncoderOptions(settings, cores);
  if (settings.codec == VideoCodec::Hevc) software.leastSide = kLargestCodingTreeUnit;

  std::vector<EncoderCandidate> candidates;
  for (EncoderCandidate& candidate : hardwareCandidates(settings, software.setup)) {
    if (avcodec_find_encoder_by_name(candidate.setup.encoder.c_str())) {
      candidates.push_back(std::move(candidate));
    }
  }
  candidates.push_back(std::move(software));
  return candidates;
}

}  // namespace vantrel
