#include "model/encoding_settings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vantrel {
namespace {

using Codec = EncodingSettings::Codec;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool isValidRate(double rate) {
  return EncodingSettings{Codec::h264, rate}.isValid();
}

TEST(EncodingSettings, AreHevcAtAValidRateAtFirst) {
  EXPECT_EQ(EncodingSettings(), (EncodingSettings{Codec::hevc, 2.5}));
  EXPECT_TRUE(EncodingSettings().isValid());
}

TEST(EncodingSettings, ListTheirCodecsWithLabels) {
  EXPECT_EQ(EncodingSettings::kCodecs, (std::array{Codec::h264, Codec::hevc}));
  EXPECT_EQ(EncodingSettings::rawValue(Codec::h264), QStringLiteral("H.264"));
  EXPECT_EQ(EncodingSettings::rawValue(Codec::hevc), QStringLiteral("HEVC"));
}

TEST(EncodingSettings, AreValidUpToBothLimits) {
  EXPECT_TRUE(isValidRate(0.01));
  EXPECT_TRUE(isValidRate(10000));
  EXPECT_FALSE(isValidRate(0.009));
  EXPECT_FALSE(isValidRate(10000.5));
  EXPECT_FALSE(isValidRate(-1));
  EXPECT_FALSE(isValidRate(kInfinity));
  EXPECT_FALSE(isValidRate(kNaN));
}

TEST(EncodingSettings, DifferByTheLastBitOfARate) {
  const double next = std::nextafter(2.5, 3.0);
  EXPECT_NE(EncodingSettings(), (EncodingSettings{Codec::hevc, next}));
  EXPECT_NE(EncodingSettings(), (EncodingSettings{Codec::h264, 2.5}));
}

TEST(BitrateRange, WidensToContainTheRate) {
  EXPECT_EQ(EncodingSettings::bitrateRange(0), (BitrateRange{0.01, 40}));
  EXPECT_EQ(EncodingSettings::bitrateRange(-3), (BitrateRange{0.01, 40}));
  EXPECT_EQ(EncodingSettings::bitrateRange(0.2), (BitrateRange{0.2, 40}));
  EXPECT_EQ(EncodingSettings::bitrateRange(2.5), (BitrateRange{0.5, 40}));
  EXPECT_EQ(EncodingSettings::bitrateRange(40), (BitrateRange{0.5, 40}));
  EXPECT_EQ(EncodingSettings::bitrateRange(40.2), (BitrateRange{0.5, 41}));
  EXPECT_EQ(EncodingSettings::bitrateRange(1200), (BitrateRange{0.5, 1200}));
}

TEST(BitrateRange, StaysForARateThatIsNotANumber) {
  EXPECT_EQ(EncodingSettings::bitrateRange(kNaN), (BitrateRange{0.01, 40}));
}

TEST(EncodingSettings, MatchASourceByItsRateOrTheDefault) {
  EXPECT_EQ(EncodingSettings::originalBitrate(60), 60);
  for (const double none : {0.0, -1.0, kInfinity, kNaN})
    EXPECT_EQ(EncodingSettings::originalBitrate(none), 2.5);
}

}  // namespace
}  // namespace vantrel
