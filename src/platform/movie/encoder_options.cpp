#include "platform/movie/encoder_options.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <span>

namespace vantrel {
namespace {

/// Where a film does not tell its frame rate.
constexpr double kUsualFrameRate = 30;

struct Preset {
  const char* name;
  /// Pixels that one core encodes in a second: 1080p at 8 Mbit/s, measured by `benchmarks/run.py`.
  double pixelsPerCore;
  /// Parameters of the encoder on top of the preset, each with a colon in front.
  const char* parameters = "";
};

// From slow to fast. Slower ones than these cost time and gain next to nothing, and x264's fastest
// loses what a user sees. Weighing what the eye makes of noise costs x265's fastest a twentieth of
// its time, and neither PSNR nor SSIM gains from it.
constexpr std::array kX264Presets{Preset{"faster", 35e6}, Preset{"veryfast", 62e6},
                                  Preset{"superfast", 103e6}};
constexpr std::array kX265Presets{Preset{"veryfast", 22e6}, Preset{"superfast", 34e6},
                                  Preset{"ultrafast", 41e6, ":psy-rd=0"}};

/// How many times faster than the film the encoder shall be by the tables above. Leaves room for
/// the decoder, for cores that wait for each other, and for slower machines.
constexpr double kHeadroom = 2.5;

/// The buffers of the rate control, in seconds of the average rate. What a short film may be off
/// the rate is a part of them.
constexpr double kX264BufferSeconds = 0.5;
constexpr double kX265BufferSeconds = 1.5;
/// At low frame rates a buffer holds the bits of so many frames, lest it bound each of them.
constexpr double kBufferFrames = 15;

/// x264's own tolerance of 1 lets a film of a second miss the rate by 40 %. Weighing blocks by what
/// later frames take from them (mbtree) leaves the last frames of a film so little that one of a
/// second misses it by 35 %, and gains less than it costs. A full buffer makes room for a first
/// frame that is large at a low rate. Frames whose sizes differ a little less (qcomp), and a third
/// of a second that is known ahead at any preset, keep films that come up from black to the rate.
constexpr const char* kX264RateParameters =
    "ratetol=0.1:mbtree=0:qcomp=0.5:rc-lookahead=10:vbv-init=1";
/// With a buffer, the highest rate in terms of the average.
constexpr double kX264MaxRate = 1.4;
/// x265 tends to leave the buffer a little fuller than this.
constexpr const char* kX265InitialFullness = "0.55";
/// The length of film that x265 is told to expect, in seconds. A film that runs longer than that it
/// brings back to the rate within about as much time, and counts each key frame where it stands
/// instead of lending its bits to the frames behind it.
constexpr double kX265ExpectedSeconds = 1.0 / 6;

const Preset& presetFor(std::span<const Preset> presets, double pixelsPerSecond, int cores) {
  const double needed = pixelsPerSecond * kHeadroom / std::max(cores, 1);
  const auto found = std::ranges::find_if(
      presets, [&](const Preset& preset) { return preset.pixelsPerCore >= needed; });
  return found == presets.end() ? presets.back() : *found;
}

/// In whole units of `unit`, absent for what is no such number or does not fit into `largest`.
std::optional<int64_t> inUnits(Fraction value, double unit, double largest) {
  if (value.denominator == 0) return std::nullopt;
  const double units = std::round(value.numerator / (value.denominator * unit));
  if (units < 0 || units > largest) return std::nullopt;
  return static_cast<int64_t>(units);
}

/// "(x,y)"
std::optional<std::string> pair(Fraction x, Fraction y, double unit, double largest) {
  const std::optional<int64_t> first = inUnits(x, unit, largest);
  const std::optional<int64_t> second = inUnits(y, unit, largest);
  if (!first || !second) return std::nullopt;
  return "(" + std::to_string(*first) + "," + std::to_string(*second) + ")";
}

/// As x265 reads it, in the units of the SEI message (ITU-T H.265, D.3.28); absent for what the
/// message cannot say.
std::optional<std::string> masterDisplay(const MasteringDisplay& display) {
  constexpr double kChromaticity = 0.00002, kLuminance = 0.0001;
  const auto chromaticity = [&](const std::array<Fraction, 2>& point) {
    return pair(point[0], point[1], kChromaticity, std::numeric_limits<uint16_t>::max());
  };
  const auto& [red, green, blue] = display.primaries;
  const auto r = chromaticity(red), g = chromaticity(green), b = chromaticity(blue);
  const auto white = chromaticity(display.whitePoint);
  const auto luminance = pair(display.highestLuminance, display.lowestLuminance, kLuminance,
                              std::numeric_limits<uint32_t>::max());
  if (!r || !g || !b || !white || !luminance) return std::nullopt;
  return "G" + *g + "B" + *b + "R" + *r + "WP" + *white + "L" + *luminance;
}

std::string hdrParameters(const VideoInputSettings& settings) {
  constexpr int kPq = 16;
  std::string parameters;
  // Follows PQ's steps; wrong for HLG.
  if (settings.color.transfer == kPq) parameters += ":hdr10-opt=1";
  const HdrMetadata& metadata = settings.hdrMetadata;
  if (metadata.masteringDisplay) {
    if (const std::optional<std::string> display = masterDisplay(*metadata.masteringDisplay))
      parameters += ":master-display=" + *display;
  }
  if (metadata.contentLight) {
    parameters += ":max-cll=" + std::to_string(metadata.contentLight->maximum) + "," +
                  std::to_string(metadata.contentLight->maximumFrameAverage);
  }
  return parameters;
}

void addX264(EncoderOptions& result, const Preset& preset) {
  result.encoder = "libx264";
  result.maxRate = std::llround(static_cast<double>(result.averageRate) * kX264MaxRate);
  result.options = {
      {"preset", preset.name}, {"forced-idr", "1"}, {"x264-params", kX264RateParameters}};
}

/// Without room above the average rate x265 both spares and spends to keep its buffer half full.
/// Strict constant rate would pay what a plain scene leaves in filler, which is taken out again.
void addX265(EncoderOptions& result, const Preset& preset, const VideoInputSettings& settings) {
  result.encoder = "libx265";
  result.maxRate = result.averageRate;
  const auto expectedFrames = std::max(std::llround(result.frameRate * kX265ExpectedSeconds), 1LL);
  std::string parameters = "log-level=none:open-gop=0:repeat-headers=0:vbv-init=";
  parameters += kX265InitialFullness;
  parameters += ":total-frames=" + std::to_string(expectedFrames) + preset.parameters;
  if (settings.isHdr) parameters += hdrParameters(settings);
  result.options = {{"preset", preset.name},
                    {"profile", settings.isHdr ? "main10" : "main"},
                    {"forced-idr", "1"},
                    {"x265-params", std::move(parameters)}};
}

}  // namespace

EncoderOptions softwareEncoderOptions(const VideoInputSettings& settings, int cores) {
  EncoderOptions result;
  result.averageRate = settings.bitsPerSecond;
  result.frameRate = settings.expectedFrameRate > 0 ? settings.expectedFrameRate : kUsualFrameRate;
  const bool isH264 = settings.codec == VideoCodec::H264;
  const double seconds =
      std::max(isH264 ? kX264BufferSeconds : kX265BufferSeconds, kBufferFrames / result.frameRate);
  result.bufferSize = static_cast<int>(std::min<double>(
      static_cast<double>(result.averageRate) * seconds, std::numeric_limits<int>::max()));
  const double pixelsPerSecond =
      static_cast<double>(settings.width) * settings.height * result.frameRate;
  if (isH264) {
    addX264(result, presetFor(kX264Presets, pixelsPerSecond, cores));
  } else {
    addX265(result, presetFor(kX265Presets, pixelsPerSecond, cores), settings);
  }
  return result;
}

}  // namespace vantrel
