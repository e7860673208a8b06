#include "tools/crop_once_options.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace vantrel {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
using Arguments = std::vector<const char*>;

CropOnceOptions parse(const Arguments& arguments) {
  return CropOnceOptions::parse(arguments);
}

/// What is wrong with the arguments; "" if nothing is.
std::string refusalOf(const Arguments& arguments) {
  try {
    parse(arguments);
    return "";
  } catch (const WrongUsage& error) {
    return error.what();
  }
}

TEST(CropOnceOptions, NeedsTwoFiles) {
  const CropOnceOptions options = parse({"a.png", "b.png"});
  EXPECT_EQ(options.source, "a.png");
  EXPECT_EQ(options.destination, "b.png");
  const std::string needed = "A source and a destination are needed";
  EXPECT_EQ(refusalOf({}), needed);
  EXPECT_EQ(refusalOf({"a"}), needed);
  EXPECT_EQ(refusalOf({"a", "b", "c"}), needed);
  EXPECT_EQ(refusalOf({"", "b"}), needed);
  EXPECT_EQ(refusalOf({"a", ""}), needed);
}

TEST(CropOnceOptions, LeavesAbsentWhatWasNotGiven) {
  const CropOnceOptions options = parse({"a", "b"});
  EXPECT_FALSE(options.left || options.top || options.right || options.bottom);
  EXPECT_FALSE(options.codec || options.megabitsPerSecond);
  EXPECT_FALSE(options.format || options.quality || options.background);
  EXPECT_FALSE(options.progress);
}

TEST(CropOnceOptions, ReadsEveryOption) {
  const CropOnceOptions options = parse({"--left",
                                         "1",
                                         "a",
                                         "--top",
                                         "2",
                                         "--right",
                                         "3",
                                         "--bottom",
                                         "4",
                                         "b",
                                         "--codec",
                                         "h264",
                                         "--mbps",
                                         "2.5",
                                         "--format",
                                         "jpeg",
                                         "--quality",
                                         "0.75",
                                         "--background",
                                         "1,0.5,0",
                                         "--progress"});
  EXPECT_EQ(options.source, "a");
  EXPECT_EQ(options.destination, "b");
  EXPECT_EQ(options.left, 1);
  EXPECT_EQ(options.top, 2);
  EXPECT_EQ(options.right, 3);
  EXPECT_EQ(options.bottom, 4);
  EXPECT_EQ(options.codec, EncodingSettings::Codec::h264);
  EXPECT_EQ(options.megabitsPerSecond, 2.5);
  EXPECT_EQ(options.format, ImageEncodingSettings::Format::jpeg);
  EXPECT_EQ(options.quality, 0.75);
  EXPECT_EQ(options.background, ImageBackground(1, 0.5, 0));
  EXPECT_TRUE(options.progress);
}

TEST(CropOnceOptions, ReadsTheOtherChoices) {
  const CropOnceOptions options = parse({"a", "b", "--codec", "hevc", "--format", "png"});
  EXPECT_EQ(options.codec, EncodingSettings::Codec::hevc);
  EXPECT_EQ(options.format, ImageEncodingSettings::Format::png);
}

TEST(CropOnceOptions, TakesFilesThatBeginWithADashAfterTwo) {
  const CropOnceOptions options = parse({"--left", "1", "--", "-a", "--left"});
  EXPECT_EQ(options.source, "-a");
  EXPECT_EQ(options.destination, "--left");
}

TEST(CropOnceOptions, KeepsTheBytesOfNames) {
  EXPECT_EQ(parse({"caf\xe9", "b"}).source.native(), "caf\xe9");
}

TEST(CropOnceOptions, TakesMarginsAsTyped) {
  EXPECT_EQ(parse({"a", "b", "--left", "-5"}).left, -5);
  EXPECT_EQ(parse({"a", "b", "--top", "9223372036854775807"}).top,
            std::numeric_limits<int64_t>::max());
}

TEST(CropOnceOptions, RefusesWhatIsNoWholeNumber) {
  for (const char* value :
       {"", "x", "1.5", "1px", " 1", "1 ", "+1", "0x10", "1e3", "--top", "9223372036854775808"}) {
    EXPECT_EQ(refusalOf({"a", "b", "--left", value}), "--left takes a whole number") << value;
  }
}

TEST(CropOnceOptions, RefusesABitrateOutOfRange) {
  for (const char* value : {"", "0", "0.009", "10000.5", "-1", "inf", "nan", "8M"}) {
    EXPECT_EQ(refusalOf({"a", "b", "--mbps", value}), "--mbps takes a number from 0.01 to 10000")
        << value;
  }
  EXPECT_EQ(parse({"a", "b", "--mbps", "0.01"}).megabitsPerSecond, 0.01);
  EXPECT_EQ(parse({"a", "b", "--mbps", "10000"}).megabitsPerSecond, 10000);
}

TEST(CropOnceOptions, RefusesAQualityThatIsNoNumber) {
  for (const char* value : {"", "high", "inf", "nan", "90%"}) {
    EXPECT_EQ(refusalOf({"a", "b", "--quality", value}), "--quality takes a number from 0 to 1")
        << value;
  }
}

TEST(CropOnceOptions, LeavesTheLimitsOfQualityToTheExporter) {
  EXPECT_EQ(parse({"a", "b", "--quality", "1.7"}).quality, 1.7);
  EXPECT_EQ(parse({"a", "b", "--quality", "-0.2"}).quality, -0.2);
}

TEST(CropOnceOptions, RefusesABackgroundThatIsNoColour) {
  for (const char* value : {"", "1", "1,0", "1,0,0,0", "1,0,x", "1,,0", "1,0,", ",1,0", "255,0,0",
                            "-1,0,0", "1 ,0,0", "nan,0,0"}) {
    EXPECT_THAT(refusalOf({"a", "b", "--background", value}),
                StartsWith("--background takes three numbers"))
        << value;
  }
}

TEST(CropOnceOptions, RefusesAnUnknownChoice) {
  EXPECT_EQ(refusalOf({"a", "b", "--codec", "av1"}), "--codec takes h264 or hevc");
  EXPECT_EQ(refusalOf({"a", "b", "--format", "PNG"}), "--format takes jpeg or png");
}

TEST(CropOnceOptions, RefusesAnUnknownOption) {
  EXPECT_EQ(refusalOf({"a", "b", "--lefts", "1"}), "--lefts is not an option");
  EXPECT_EQ(refusalOf({"a", "b", "--left=1"}), "--left=1 is not an option");
  EXPECT_EQ(refusalOf({"a", "b", "-"}), "- is not an option");
  EXPECT_EQ(refusalOf({"--help"}), "--help is not an option");
}

TEST(CropOnceOptions, RefusesAnOptionWithoutItsValue) {
  EXPECT_EQ(refusalOf({"a", "b", "--left"}), "--left takes a value");
}

TEST(CropOnceOptions, RefusesAnOptionGivenTwice) {
  EXPECT_EQ(refusalOf({"a", "b", "--left", "1", "--left", "1"}), "--left is given twice");
  EXPECT_EQ(refusalOf({"a", "b", "--progress", "--progress"}), "--progress is given twice");
}

TEST(CropOnceOptions, CropsByTheMarginsAsTyped) {
  const CropOnceOptions options =
      parse({"a", "b", "--left", "1", "--top", "2", "--right", "3", "--bottom", "4"});
  EXPECT_EQ(options.crop({100, 50}, 1), QRectF(1, 2, 96, 44));
  EXPECT_EQ(options.crop({101, 51}, 2), QRectF(1, 2, 97, 45));
}

TEST(CropOnceOptions, KeepsAllOfAnAxisWithoutMarginsButWhatTheStepCutsOff) {
  EXPECT_EQ(parse({"a", "b"}).crop({101, 51}, 1), QRectF(0, 0, 101, 51));
  EXPECT_EQ(parse({"a", "b"}).crop({101, 51}, 2), QRectF(0, 0, 100, 50));
  EXPECT_EQ(parse({"a", "b", "--left", "1"}).crop({101, 51}, 2), QRectF(1, 0, 100, 50));
  EXPECT_EQ(parse({"a", "b", "--bottom", "4"}).crop({101, 51}, 2), QRectF(0, 0, 100, 47));
}

TEST(CropOnceOptions, HasNoCropWhereMarginsDoNotFit) {
  for (const char* margin : {"-1", "100", "9223372036854775807", "-9223372036854775808"}) {
    EXPECT_EQ(parse({"a", "b", "--left", margin}).crop({100, 100}, 1), std::nullopt);
    EXPECT_EQ(parse({"a", "b", "--bottom", margin}).crop({100, 100}, 2), std::nullopt);
  }
  EXPECT_EQ(parse({"a", "b", "--top", "60", "--bottom", "40"}).crop({100, 100}, 1), std::nullopt);
  EXPECT_EQ(parse({"a", "b"}).crop({1, 1}, 2), std::nullopt);
}

TEST(CropOnceOptions, UsageNamesEveryOption) {
  for (const char* option :
       {"--left N", "--top N", "--right N", "--bottom N", "--codec h264|hevc", "--mbps X",
        "--format png|jpeg", "--quality Q", "--background R,G,B", "--progress"}) {
    EXPECT_THAT(CropOnceOptions::usage(), HasSubstr(option));
  }
}

}  // namespace
}  // namespace vantrel
