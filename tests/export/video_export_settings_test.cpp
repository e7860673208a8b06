#include "export/video_export_settings.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel {
namespace {

using namespace VideoExporter;
using Codec = EncodingSettings::Codec;

const CropVideoColor kUnknown;
const CropVideoColor kHlg = CropVideoColor::of({2, 18, 2});
const CropVideoColor kPq = CropVideoColor::of({12, 16, 10});

TEST(VideoExportSettings, TakeEvenCropsInsideTheBounds) {
  const QRectF bounds(0, 0, 101, 100);
  EXPECT_TRUE(isLegalCrop({0, 0, 100, 100}, bounds));
  EXPECT_TRUE(isLegalCrop({1, 0, 100, 100}, bounds));
  EXPECT_TRUE(isLegalCrop({99, 98, 2, 2}, bounds));
  EXPECT_FALSE(isLegalCrop({0, 0, 101, 100}, bounds)) << "odd";
  EXPECT_FALSE(isLegalCrop({0, 0, 100, 99}, bounds)) << "odd";
  EXPECT_FALSE(isLegalCrop({2, 0, 100, 100}, bounds)) << "outside";
  EXPECT_FALSE(isLegalCrop({0, -1, 100, 100}, bounds)) << "outside";
  EXPECT_FALSE(isLegalCrop({0, 0, 100, 0}, bounds)) << "empty";
  EXPECT_FALSE(isLegalCrop({0, 0, 1.9, 100}, bounds)) << "too narrow";
  EXPECT_FALSE(isLegalCrop({50, 50, -2, -2}, bounds)) << "turned inside out";
}

TEST(VideoExportSettings, RefuseCropsThatAreNoNumbers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  const QRectF bounds(0, 0, 100, 100);
  for (const double bad : {nan, infinite, -infinite}) {
    EXPECT_FALSE(isLegalCrop({bad, 0, 2, 2}, bounds));
    EXPECT_FALSE(isLegalCrop({0, bad, 2, 2}, bounds));
    EXPECT_FALSE(isLegalCrop({0, 0, bad, 2}, bounds));
    EXPECT_FALSE(isLegalCrop({0, 0, 2, bad}, bounds));
  }
}

TEST(VideoExportSettings, TruncateFractionsOfACrop) {
  EXPECT_TRUE(isLegalCrop({0.5, 0.5, 50.75, 50.75}, QRectF(0, 0, 100, 100)));
  const QRectF crop(10.75, 20.25, 50.75, 40.5);
  const VideoOutputSettings output = videoOutputSettings({}, crop, kUnknown);
  EXPECT_EQ(output.transform, (AffineTransform{1, 0, 0, 1, -10, -20}));
  EXPECT_EQ(output.width, 50);
  EXPECT_EQ(output.height, 40);
  const VideoInputSettings input = videoInputSettings({}, crop, {}, kUnknown);
  EXPECT_EQ(input.width, 50);
  EXPECT_EQ(input.height, 40);
}

TEST(VideoExportSettings, KeepTheSourcesColour) {
  const ColorTags smpte{6, 6, 5};
  EXPECT_EQ(writtenColor(CropVideoColor::of(smpte)), smpte);
  EXPECT_EQ(writtenColor(kPq), (ColorTags{12, 16, 10}));
}

TEST(VideoExportSettings, FillInBt709ForSdr) {
  EXPECT_EQ(writtenColor(kUnknown), (ColorTags{1, 1, 1}));
  EXPECT_EQ(writtenColor(CropVideoColor::of({9, 2, 2})), (ColorTags{9, 1, 1}));
}

TEST(VideoExportSettings, FillInBt2020ForHdr) {
  EXPECT_EQ(writtenColor(kHlg), (ColorTags{9, 18, 9}));
}

TEST(VideoExportSettings, WriteNoRgb) {
  EXPECT_EQ(writtenColor(CropVideoColor::of({1, 13, 0})), (ColorTags{1, 13, 1}));
  EXPECT_EQ(writtenColor(CropVideoColor::of({9, 16, 0})), (ColorTags{9, 16, 9}));
  EXPECT_EQ(videoOutputSettings({}, {0, 0, 2, 2}, CropVideoColor::of({9, 16, 0})).matrixForRgb, 9);
}

TEST(VideoExportSettings, ReadTenBitsForHdrAlone) {
  EXPECT_TRUE(videoOutputSettings({}, {0, 0, 2, 2}, kHlg).tenBit);
  EXPECT_FALSE(videoOutputSettings({}, {0, 0, 2, 2}, CropVideoColor::of({9, 14, 9})).tenBit);
  EXPECT_TRUE(videoInputSettings({}, {0, 0, 2, 2}, {}, kPq).isHdr);
  EXPECT_FALSE(videoInputSettings({}, {0, 0, 2, 2}, {}, kUnknown).isHdr);
}

TEST(VideoExportSettings, TurnAndCropInOneStep) {
  MovieTrack track;
  track.naturalSize = {1920, 1080};
  track.preferredTransform = {0, 1, -1, 0, 0, 0};
  track.chromaSiting = ChromaSiting::TopLeft;
  const VideoOutputSettings output =
      videoOutputSettings(geometry(track), {100, 201, 640, 480}, kUnknown);
  EXPECT_EQ(output.transform, (AffineTransform{0, 1, -1, 0, 980, -201}));
  EXPECT_EQ(output.chromaSiting, ChromaSiting::TopLeft);
}

TEST(VideoExportSettings, DescribeTheWrittenVideo) {
  MovieTrack track;
  track.timescale = 30'000;
  track.nominalFrameRate = 29.97;
  track.chromaSiting = ChromaSiting::Top;
  track.metadata = {{MovieMetadataItem::kPixelDensity, 30,
                     MetadataDictionary{{"widthPixels", 200},
                                        {"heightPixels", 200},
                                        {"widthPoints", 100},
                                        {"heightPoints", 100}}}};
  const VideoInputSettings input =
      videoInputSettings(track, {0, 0, 64, 48}, {Codec::h264, 8}, kUnknown);
  EXPECT_EQ(input.codec, VideoCodec::H264);
  EXPECT_EQ(input.bitsPerSecond, 8'000'000);
  EXPECT_EQ(input.maxKeyFrameInterval, 2.0);
  EXPECT_EQ(input.timescale, 30'000);
  EXPECT_EQ(input.expectedFrameRate, 29.97);
  EXPECT_EQ(input.chromaSiting, ChromaSiting::Top);
  EXPECT_EQ(input.metadata, displayDensity(track, QSizeF(64, 48)));
  EXPECT_EQ(videoInputSettings(track, {0, 0, 64, 48}, {Codec::hevc, 8}, kUnknown).codec,
            VideoCodec::Hevc);
}

TEST(VideoExportSettings, TruncateTheBitrate) {
  const auto bitsAt = [](double mbps) {
    return videoInputSettings({}, {0, 0, 2, 2}, {Codec::hevc, mbps}, kUnknown).bitsPerSecond;
  };
  EXPECT_EQ(bitsAt(0.015), 15'000);
  EXPECT_EQ(bitsAt(1.2345678), 1'234'567);
  EXPECT_EQ(bitsAt(10'000), 10'000'000'000);
}

TEST(VideoExportSettings, CarryHdrMetadataForHdrAlone) {
  MovieTrack track;
  track.hdrMetadata.contentLight = ContentLight{1000, 400};
  EXPECT_EQ(videoInputSettings(track, {0, 0, 2, 2}, {}, kPq).hdrMetadata, track.hdrMetadata);
  EXPECT_EQ(videoInputSettings(track, {0, 0, 2, 2}, {}, kUnknown).hdrMetadata, HdrMetadata{});
}

TEST(VideoExportSettings, KeepAllThatAnAudioTrackSaysOfItself) {
  MovieTrack track;
  track.kind = MovieTrack::Kind::Audio;
  track.id = 7;
  track.isEnabled = false;
  track.languageCode = "deu";
  track.extendedLanguageTag = "de-CH";
  track.quickTime = QuickTimeTrack();
  track.quickTime->userData = {1};
  track.quickTime->metadata = {2};
  const AudioInputSettings settings = audioInputSettings(track);
  EXPECT_EQ(settings.source.id, 7);
  EXPECT_FALSE(settings.marksOutputTrackAsEnabled);
  EXPECT_EQ(settings.languageCode, "deu");
  EXPECT_EQ(settings.extendedLanguageTag, "de-CH");
  EXPECT_EQ(settings.userData, std::vector<uint8_t>{1});
  EXPECT_EQ(settings.metadata, std::vector<uint8_t>{2});
}

TEST(VideoExportSettings, KeepTheNameOfAnAudioTrackWithoutBoxes) {
  MovieTrack track;
  track.kind = MovieTrack::Kind::Audio;
  EXPECT_TRUE(audioInputSettings(track).userData.empty());
  track.title = "Version longue";
  const std::vector<uint8_t> userData = audioInputSettings(track).userData;
  EXPECT_EQ(std::string(userData.begin(), userData.end()),
            std::string("\0\0\0\x1eudta\0\0\0\x16nameVersion longue", 30));
}

}  // namespace
}  // namespace vantrel
