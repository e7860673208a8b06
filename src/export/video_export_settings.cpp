#include "export/video_export_settings.h"

#include <cmath>

namespace vantrel::VideoExporter {
namespace {

constexpr double kBitsPerMegabit = 1'000'000;

int pixels(double value) {
  return static_cast<int>(value);
}

}  // namespace

bool isLegalCrop(const QRectF& crop, const QRectF& bounds) {
  // Written so that what is not a number fails.
  const bool isInside = crop.x() >= bounds.x() && crop.y() >= bounds.y() &&
                        crop.x() + crop.width() <= bounds.x() + bounds.width() &&
                        crop.y() + crop.height() <= bounds.y() + bounds.height();
  return isInside && crop.width() >= 2 && crop.height() >= 2 && pixels(crop.width()) % 2 == 0 &&
         pixels(crop.height()) % 2 == 0;
}

ColorTags writtenColor(const CropVideoColor& source) {
  return source.tags().completed();
}

VideoOutputSettings videoOutputSettings(const VideoGeometry& geometry, const QRectF& crop,
                                        const CropVideoColor& color) {
  const QTransform transform =
      geometry.transform * QTransform::fromTranslate(-std::trunc(crop.x()), -std::trunc(crop.y()));
  VideoOutputSettings settings;
  settings.transform = {transform.m11(), transform.m12(), transform.m21(),
                        transform.m22(), transform.dx(),  transform.dy()};
  settings.width = pixels(crop.width());
  settings.height = pixels(crop.height());
  settings.tenBit = color.isHDR();
  settings.chromaSiting = geometry.track.chromaSiting;
  settings.matrixForRgb = writtenColor(color).matrix;
  return settings;
}

VideoInputSettings videoInputSettings(const MovieTrack& track, const QRectF& crop,
                                      const EncodingSettings& settings,
                                      const CropVideoColor& color) {
  VideoInputSettings input;
  input.codec =
      settings.codec == EncodingSettings::Codec::h264 ? VideoCodec::H264 : VideoCodec::Hevc;
  input.width = pixels(crop.width());
  input.height = pixels(crop.height());
  input.bitsPerSecond = static_cast<int64_t>(settings.megabitsPerSecond * kBitsPerMegabit);
  input.color = writtenColor(color);
  input.chromaSiting = track.chromaSiting;
  input.isHdr = color.isHDR();
  if (input.isHdr) input.hdrMetadata = track.hdrMetadata;
  input.timescale = track.timescale;
  input.expectedFrameRate = track.nominalFrameRate;
  input.metadata = displayDensity(track, crop.size());
  return input;
}

AudioInputSettings audioInputSettings(const MovieTrack& track) {
  AudioInputSettings settings;
  settings.source = track;
  settings.languageCode = track.languageCode;
  settings.extendedLanguageTag = track.extendedLanguageTag;
  settings.marksOutputTrackAsEnabled = track.isEnabled;
  if (track.quickTime) {
    settings.userData = track.quickTime->userData;
    settings.metadata = track.quickTime->metadata;
  } else {
    settings.userData = quickTimeUserDataBox(track.title);
  }
  return settings;
}

}  // namespace vantrel::VideoExporter
