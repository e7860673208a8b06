#include "platform/desktop/formatting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vantrel::CropFormatting {
namespace {

TEST(Formatting, LocaleIsAmericanWhateverTheUsers) {
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(locale().name(), u"en_US");
  EXPECT_EQ(byteCount(1'200'000), u"1.2 MB");
  EXPECT_EQ(fixed(1234.5, 1), u"1,234.5");
  QLocale::setDefault(QLocale::system());
}

struct Count {
  int64_t bytes;
  const char16_t* text;
};

class ByteCount : public ::testing::TestWithParam<Count> {};

TEST_P(ByteCount, ReadsAsTheFileStyle) {
  EXPECT_EQ(byteCount(GetParam().bytes), QStringView(GetParam().text)) << GetParam().bytes;
}

INSTANTIATE_TEST_SUITE_P(Bytes, ByteCount,
                         ::testing::Values(Count{0, u"Zero kB"}, Count{1, u"1 byte"},
                                           Count{2, u"2 bytes"}, Count{512, u"512 bytes"},
                                           Count{999, u"999 bytes"}, Count{-1, u"Zero kB"},
                                           Count{std::numeric_limits<int64_t>::min(), u"Zero kB"}));

INSTANTIATE_TEST_SUITE_P(Kilobytes, ByteCount,
                         ::testing::Values(Count{1'000, u"1 kB"}, Count{1'499, u"1 kB"},
                                           Count{1'500, u"2 kB"}, Count{34'000, u"34 kB"},
                                           Count{34'499, u"34 kB"}, Count{100'000, u"100 kB"},
                                           Count{999'499, u"999 kB"}));

INSTANTIATE_TEST_SUITE_P(Megabytes, ByteCount,
                         ::testing::Values(Count{999'500, u"1 MB"}, Count{999'950, u"1 MB"},
                                           Count{1'000'000, u"1 MB"}, Count{1'049'999, u"1 MB"},
                                           Count{1'050'000, u"1.1 MB"}, Count{1'200'000, u"1.2 MB"},
                                           Count{100'000'000, u"100 MB"},
                                           Count{999'949'999, u"999.9 MB"}));

INSTANTIATE_TEST_SUITE_P(
    Larger, ByteCount,
    ::testing::Values(Count{999'950'000, u"1 GB"}, Count{1'000'000'000, u"1 GB"},
                      Count{1'010'000'000, u"1.01 GB"}, Count{1'100'000'000, u"1.1 GB"},
                      Count{3'450'000'000, u"3.45 GB"}, Count{3'454'999'999, u"3.45 GB"},
                      Count{3'455'000'000, u"3.46 GB"}, Count{999'994'999'999, u"999.99 GB"},
                      Count{999'995'000'000, u"1 TB"}, Count{1'230'000'000'000, u"1.23 TB"},
                      Count{999'995'000'000'000, u"1 PB"}, Count{999'995'000'000'000'000, u"1 EB"},
                      Count{std::numeric_limits<int64_t>::max(), u"9.22 EB"}));

TEST(Fixed, HasExactlyThatManyDigits) {
  EXPECT_EQ(fixed(8, 2), u"8.00");
  EXPECT_EQ(fixed(0.5, 2), u"0.50");
  EXPECT_EQ(fixed(0, 1), u"0.0");
  EXPECT_EQ(fixed(29.97, 3), u"29.970");
  EXPECT_EQ(fixed(42, 0), u"42");
}

TEST(Fixed, RoundsAHalfAwayFromZero) {
  EXPECT_EQ(fixed(0.125, 2), u"0.13");
  EXPECT_EQ(fixed(-0.125, 2), u"-0.13");
  EXPECT_EQ(fixed(0.5, 0), u"1");
  EXPECT_EQ(fixed(1.5, 0), u"2");
  EXPECT_EQ(fixed(2.5, 0), u"3");
  EXPECT_EQ(fixed(0.25, 1), u"0.3");
  EXPECT_EQ(fixed(0.2499, 1), u"0.2");
}

TEST(Fixed, RoundsWhatIsReadNotItsNearestBinaryFraction) {
  EXPECT_EQ(fixed(1.005, 2), u"1.01");
  EXPECT_EQ(fixed(0.15, 1), u"0.2");
  EXPECT_EQ(fixed(2.675, 2), u"2.68");
}

TEST(Fixed, CarriesThroughTheDigits) {
  EXPECT_EQ(fixed(9.996, 2), u"10.00");
  EXPECT_EQ(fixed(99.95, 1), u"100.0");
  EXPECT_EQ(fixed(999.999, 2), u"1,000.00");
  EXPECT_EQ(fixed(0.999, 0), u"1");
}

TEST(Fixed, GroupsThousands) {
  EXPECT_EQ(fixed(999, 1), u"999.0");
  EXPECT_EQ(fixed(1000, 0), u"1,000");
  EXPECT_EQ(fixed(10000, 2), u"10,000.00");
  EXPECT_EQ(fixed(1234567.891, 2), u"1,234,567.89");
  EXPECT_EQ(fixed(-123456, 0), u"-123,456");
}

TEST(Fixed, HasNoNegativeZero) {
  EXPECT_EQ(fixed(-0.001, 2), u"0.00");
  EXPECT_EQ(fixed(-0.0, 1), u"0.0");
}

TEST(Fixed, TakesEveryValue) {
  EXPECT_EQ(fixed(std::numeric_limits<double>::denorm_min(), 2), u"0.00");
  EXPECT_EQ(fixed(std::numeric_limits<double>::max(), 1).size(), 309 + 102 + 2);
  EXPECT_EQ(fixed(std::numeric_limits<double>::infinity(), 2), u"inf");
  EXPECT_EQ(fixed(std::nan(""), 2), u"nan");
}

}  // namespace
}  // namespace vantrel::CropFormatting
