#include "export/export_summary.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

ExportSummary image() {
  ExportSummary summary;
  summary.codec = QStringLiteral("PNG");
  summary.bytes = 1'200'000;
  summary.resolution = QSizeF(640, 480);
  summary.imageFormat = QStringLiteral("PNG");
  return summary;
}

ExportSummary video() {
  ExportSummary summary;
  summary.codec = QStringLiteral("HEVC");
  summary.bitrate = 8;
  summary.bytes = 12'400'000;
  summary.elapsed = 3.1;
  summary.resolution = QSizeF(1920, 1080);
  return summary;
}

TEST(ExportSummary, OfAnImageHasFormatSizeAndBytes) {
  EXPECT_EQ(image().description(), u"PNG · 640 × 480 px · 1.2 MB");
}

TEST(ExportSummary, OfAnImageShowsTheFormatNotTheCodec) {
  ExportSummary summary = image();
  summary.codec = QStringLiteral("unseen");
  summary.imageFormat = QStringLiteral("JPEG");
  summary.bytes = 0;
  EXPECT_EQ(summary.description(), u"JPEG · 640 × 480 px · Zero kB");
}

TEST(ExportSummary, NeverGroupsPixels) {
  ExportSummary summary = image();
  summary.resolution = QSizeF(12000, 3000000000.0);
  EXPECT_EQ(summary.description(), u"PNG · 12000 × 3000000000 px · 1.2 MB");
}

TEST(ExportSummary, TruncatesPixels) {
  ExportSummary summary = image();
  summary.resolution = QSizeF(640.99, 480.5);
  EXPECT_EQ(summary.description(), u"PNG · 640 × 480 px · 1.2 MB");
  summary = video();
  summary.resolution = QSizeF(1920.99, 1080.5);
  EXPECT_TRUE(summary.description().contains(u" · 1920 × 1080 · "));
}

TEST(ExportSummary, OfAVideoHasAllSevenFacts) {
  EXPECT_EQ(video().description(),
            u"HEVC · SDR · 1920 × 1080 · 8.00 Mbps · 12.4 MB · exported in 3.1 s");
}

TEST(ExportSummary, OfAVideoTellsHdr) {
  ExportSummary summary = video();
  summary.isHDR = true;
  EXPECT_TRUE(summary.description().startsWith(u"HEVC · HDR · 1920"));
}

TEST(ExportSummary, OfAVideoHasTwoDigitsOfBitrateAndOneOfTime) {
  ExportSummary summary = video();
  summary.bitrate = 0.5;
  summary.elapsed = 1234.56;
  EXPECT_EQ(summary.description(),
            u"HEVC · SDR · 1920 × 1080 · 0.50 Mbps · 12.4 MB · exported in 1,234.6 s");
  summary.bitrate = 10000;
  EXPECT_TRUE(summary.description().contains(u" · 10,000.00 Mbps · "));
}

TEST(ExportSummary, TakesAPercentSignInALabel) {
  ExportSummary summary = image();
  summary.imageFormat = QStringLiteral("%2");
  EXPECT_EQ(summary.description(), u"%2 · 640 × 480 px · 1.2 MB");
}

}  // namespace
}  // namespace vantrel
