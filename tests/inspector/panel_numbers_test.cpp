#include "inspector/panel_numbers.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(PanelNumbers, WriteABitrateWithTwoDigits) {
  EXPECT_EQ(PanelNumbers::bitrate(2.5), QStringLiteral("2.50 Mbps"));
  EXPECT_EQ(PanelNumbers::bitrate(1234.567), QStringLiteral("1,234.57 Mbps"));
}

TEST(PanelNumbers, RoundAQuality) {
  EXPECT_EQ(PanelNumbers::quality(0), QStringLiteral("0%"));
  EXPECT_EQ(PanelNumbers::quality(0.9), QStringLiteral("90%"));
  EXPECT_EQ(PanelNumbers::quality(0.955), QStringLiteral("96%"));
  EXPECT_EQ(PanelNumbers::quality(1), QStringLiteral("100%"));
}

}  // namespace
}  // namespace vantrel
