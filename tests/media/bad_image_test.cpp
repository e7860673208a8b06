#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>

#include "media/image_source.h"

namespace vantrel {
namespace {

struct BadFile {
  const char* name;
  ImageError::Case error;

  friend void PrintTo(const BadFile& file, std::ostream* out) { *out << file.name; }
};

constexpr BadFile kBadFiles[] = {
    // The signature is turned by a transfer in text mode.
    {"text-mode.png", ImageError::unsupported},
    {"signature-only.png", ImageError::unreadable},
    {"wrong-data-checksum.png", ImageError::unreadable},
    {"wrong-stream-checksum.png", ImageError::unreadable},
    {"cut-in-data.png", ImageError::unreadable},
    {"without-end.png", ImageError::unreadable},
    {"zero-width.png", ImageError::unreadable},
    // 2,147,483,647 × 2,147,483,647 pixels, in a few bytes.
    {"huge.png", ImageError::unreadable},
    {"chunk-past-end.png", ImageError::unreadable},
    {"two-headers.png", ImageError::unreadable},
    {"animation.png", ImageError::multipleImages},
    {"marker-only.jpg", ImageError::unreadable},
    {"cut-in-data.jpg", ImageError::unreadable},
    {"without-end.jpg", ImageError::unreadable},
    // 65,500 × 65,500 pixels of three channels.
    {"huge.jpg", ImageError::unreadable},
    {"twelve-bits.jpg", ImageError::unreadable},
    {"segment-past-end.jpg", ImageError::unreadable},
    {"without-tables.jpg", ImageError::unreadable},
    // 704 scans, each over the whole picture.
    {"many-scans.jpg", ImageError::unreadable},
};

class BadImage : public ::testing::TestWithParam<BadFile> {};

TEST_P(BadImage, IsRefused) {
  const auto path = std::filesystem::path(VANTREL_TEST_DATA) / "bad" / GetParam().name;
  ASSERT_TRUE(std::filesystem::exists(path));
  try {
    (void)ImageSource::load(path);
    ADD_FAILURE() << "it was loaded";
  } catch (const ImageError& error) {
    EXPECT_EQ(error.error(), GetParam().error) << error.what();
  }
}

INSTANTIATE_TEST_SUITE_P(Files, BadImage, ::testing::ValuesIn(kBadFiles));

// A profile of 24 MiB, nearly all of it zeros, in a file of 24 kB.
TEST(BadProfile, IsLeftOutOfThePicture) {
  const ImageSource source =
      ImageSource::load(std::filesystem::path(VANTREL_TEST_DATA) / "bad" / "profile-bomb.png");
  EXPECT_TRUE(source.image.color().iccProfile.empty());
  EXPECT_EQ(source.colorProfileName, QStringLiteral("sRGB IEC61966-2.1"));
}

}  // namespace
}  // namespace vantrel
