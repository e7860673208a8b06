#include "export/video_geometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel {
namespace {

using VideoExporter::colorInfo;
using VideoExporter::displayDensity;
using VideoExporter::geometry;

constexpr ColorTags kSdr{1, 1, 1}, kHlg{9, 18, 9}, kPq{9, 16, 9};

MovieTrack trackOf(PictureSize size, const AffineTransform& transform = {}) {
  MovieTrack track;
  track.naturalSize = size;
  track.preferredTransform = transform;
  return track;
}

TEST(VideoGeometry, OfAnUprightTrackIsTheStoredFrame) {
  const VideoGeometry found = geometry(trackOf({1920, 1080}));
  EXPECT_EQ(found.bounds, QRectF(0, 0, 1920, 1080));
  EXPECT_TRUE(found.transform.isIdentity());
  EXPECT_EQ(found.track.naturalSize, (PictureSize{1920, 1080}));
}

TEST(VideoGeometry, PutsATurnedPictureBackAtTheOrigin) {
  // The corner (0, 0) of the stored frame becomes the upper right one.
  const VideoGeometry found = geometry(trackOf({1920, 1080}, {0, 1, -1, 0, 0, 0}));
  EXPECT_EQ(found.bounds, QRectF(0, 0, 1080, 1920));
  EXPECT_EQ(found.transform, QTransform(0, 1, -1, 0, 1080, 0));
  EXPECT_EQ(found.transform.map(QPointF(0, 0)), QPointF(1080, 0));
  EXPECT_EQ(found.transform.map(QPointF(1920, 1080)), QPointF(0, 1920));
}

TEST(VideoGeometry, FillsItsBoundsInEachOrientation) {
  const QRectF frame(0, 0, 640, 360);
  for (const AffineTransform& turn :
       {AffineTransform{1, 0, 0, 1, 0, 0}, AffineTransform{0, 1, -1, 0, 360, 0},
        AffineTransform{-1, 0, 0, -1, 0, 0}, AffineTransform{0, -1, 1, 0, 7, -5},
        AffineTransform{-1, 0, 0, 1, 0, 0}, AffineTransform{1, 0, 0, -1, 0, 360},
        AffineTransform{0, 1, 1, 0, 0, 0}, AffineTransform{0, -1, -1, 0, 0, 0}}) {
    const VideoGeometry found = geometry(trackOf({640, 360}, turn));
    EXPECT_EQ(found.bounds.topLeft(), QPointF(0, 0));
    EXPECT_EQ(found.bounds.size(), turn.a == 0 ? QSizeF(360, 640) : QSizeF(640, 360));
    EXPECT_EQ(found.transform.mapRect(frame), found.bounds);
  }
}

TEST(VideoColorInfo, IsThatOfTheFirstDescription) {
  MovieTrack track;
  EXPECT_EQ(colorInfo(track), CropVideoColor{});
  track.formatDescriptions = {{}, kSdr};
  EXPECT_EQ(colorInfo(track), CropVideoColor{});
  track.formatDescriptions = {kSdr, {6, 6, 6}};
  EXPECT_EQ(colorInfo(track), CropVideoColor::of(kSdr));
}

TEST(VideoColorInfo, IsThatOfTheFirstHdrDescriptionIfThereIsOne) {
  MovieTrack track;
  track.formatDescriptions = {kSdr, kHlg, kPq};
  EXPECT_EQ(colorInfo(track), CropVideoColor::of(kHlg));
}

MovieMetadataItem densityItem(double widthPixels, double heightPixels, double widthPoints,
                              double heightPoints) {
  return {MovieMetadataItem::kPixelDensity, 30,
          MetadataDictionary{{"widthPixels", widthPixels},
                             {"heightPixels", heightPixels},
                             {"widthPoints", widthPoints},
                             {"heightPoints", heightPoints}}};
}

MovieTrack trackWith(std::vector<MovieMetadataItem> items) {
  MovieTrack track;
  track.metadata = std::move(items);
  return track;
}

using Items = std::vector<MovieMetadataItem>;

TEST(DisplayDensity, KeepsTheRatioOfPointsToPixels) {
  const MovieTrack track = trackWith({densityItem(2880, 1800, 1440, 900)});
  EXPECT_EQ(displayDensity(track, {1000, 600}), Items{densityItem(1000, 600, 500, 300)});
}

TEST(DisplayDensity, IsNotInvented) {
  EXPECT_EQ(displayDensity(MovieTrack(), {100, 100}), Items{});
  MovieMetadataItem other = densityItem(2, 2, 1, 1);
  other.identifier = "mdta/com.example.pixeldensity";
  EXPECT_EQ(displayDensity(trackWith({other}), {100, 100}), Items{});
}

TEST(DisplayDensity, SkipsDamagedRecords) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double bad : {0.0, -1.0, infinite, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(
        displayDensity(trackWith({densityItem(100, 100, bad, 50), densityItem(bad, 100, 50, 50),
                                  densityItem(100, bad, 50, 50), densityItem(100, 100, 50, bad)}),
                       {10, 10}),
        Items{});
  }
}

TEST(DisplayDensity, SkipsRecordsThatMissAKeyOrAreNoDictionary) {
  MovieMetadataItem incomplete = densityItem(100, 100, 50, 50);
  std::get<MetadataDictionary>(incomplete.value).pop_back();
  MovieMetadataItem bytes = densityItem(100, 100, 50, 50);
  bytes.value = std::vector<uint8_t>{1, 2, 3};
  EXPECT_EQ(displayDensity(trackWith({incomplete, bytes, densityItem(10, 10, 5, 5)}), {4, 6}),
            Items{densityItem(4, 6, 2, 3)});
}

TEST(DisplayDensity, TakesTheFirstSoundRecordAlone) {
  EXPECT_EQ(displayDensity(trackWith({densityItem(2, 2, 1, 1), densityItem(3, 3, 1, 1)}), {12, 12}),
            Items{densityItem(12, 12, 6, 6)});
}

TEST(DisplayDensity, IsAtLeastOnePoint) {
  EXPECT_EQ(displayDensity(trackWith({densityItem(100, 100, 20, 20)}), {2, 2}),
            Items{densityItem(2, 2, 1, 1)});
}

TEST(DisplayDensity, RoundsHalvesUpAndPixelsDown) {
  EXPECT_EQ(displayDensity(trackWith({densityItem(4, 4, 1, 1)}), {10, 10.9}),
            Items{densityItem(10, 10, 3, 3)});
}

TEST(DisplayDensity, LooksForKeysInAnyOrder) {
  MovieMetadataItem item = densityItem(4, 4, 2, 2);
  auto& entries = std::get<MetadataDictionary>(item.value);
  std::swap(entries.front(), entries.back());
  EXPECT_EQ(displayDensity(trackWith({item}), {8, 8}), Items{densityItem(8, 8, 4, 4)});
}

TEST(DisplayDensity, KeepsTheDataTypeAbsentToo) {
  MovieMetadataItem item = densityItem(4, 4, 2, 2);
  item.dataType.reset();
  EXPECT_FALSE(displayDensity(trackWith({item}), {8, 8}).front().dataType);
}

}  // namespace
}  // namespace vantrel
