#include "platform/image/image_reader.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "platform/image/image_signature.h"
#include "support/image_makers.h"
#include "support/ordinary_user.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using testing::Bytes;
using testing::saveBytes;
using testing::TemporaryFolder;

const Bytes kPngStart = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

TEST(ImageReader, RecognisesTheContentWhateverTheName) {
  const TemporaryFolder folder;
  saveBytes(folder / "a.jpg", kPngStart);
  saveBytes(folder / "b.png", {0xff, 0xd8, 0xff, 0xe0});
  EXPECT_EQ(ImageReader::open(folder / "a.jpg")->type(), ImageType::Png);
  EXPECT_EQ(ImageReader::open(folder / "b.png")->type(), ImageType::Jpeg);
}

TEST(ImageReader, OpensNoOtherTypes) {
  const TemporaryFolder folder;
  const std::string others[] = {
      "GIF89a.........",         "BM..............", "RIFF....WEBPVP8 ", "%PDF-1.7", "x",
      std::string("\0\0\0\0", 4)};
  for (const std::string& content : others) {
    testing::writeFile(folder / "a.png", content);
    EXPECT_EQ(ImageReader::open(folder / "a.png"), nullptr) << content;
  }
}

TEST(ImageReader, OpensNothingButRegularFilesWithContent) {
  const TemporaryFolder folder;
  EXPECT_EQ(ImageReader::open(folder / "missing"), nullptr);
  EXPECT_EQ(ImageReader::open(folder.path()), nullptr);
  EXPECT_EQ(ImageReader::open("/dev/zero"), nullptr);
  EXPECT_EQ(ImageReader::open(""), nullptr);
  saveBytes(folder / "empty.png", {});
  EXPECT_EQ(ImageReader::open(folder / "empty.png"), nullptr);
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(ImageReader::open(folder / "pipe"), nullptr);

  const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, (folder / "socket").c_str(), sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(ImageReader::open(folder / "socket"), nullptr);
  ::close(listener);
}

TEST(ImageReader, OpensNoFileThatMayNotBeRead) {
  const TemporaryFolder folder;
  saveBytes(folder / "a.png", kPngStart);
  ASSERT_EQ(::chmod((folder / "a.png").c_str(), 0), 0);
  const testing::OrdinaryUser user;
  EXPECT_EQ(ImageReader::open(folder / "a.png"), nullptr);
}

TEST(ImageReader, FollowsLinks) {
  const TemporaryFolder folder;
  saveBytes(folder / "a.png", kPngStart);
  std::filesystem::create_symlink("a.png", folder / "link");
  EXPECT_NE(ImageReader::open(folder / "link"), nullptr);
}

std::optional<ImageType> heifTypeOf(const std::string& brands, uint32_t length = 0) {
  if (length == 0) length = static_cast<uint32_t>(12 + brands.size());
  std::string box = {static_cast<char>(length >> 24), static_cast<char>(length >> 16),
                     static_cast<char>(length >> 8), static_cast<char>(length)};
  box += "ftyp" + brands.substr(0, 4) + std::string(4, '\0') + brands.substr(4);
  return heifType(std::as_bytes(std::span(box)));
}

TEST(HeifType, IsDecidedByTheBrands) {
  for (const char* brand : {"heic", "heix", "heim", "heis", "hevc", "hevx", "hevm", "hevs"}) {
    EXPECT_EQ(heifTypeOf(brand + std::string("mif1")), ImageType::Heic) << brand;
    EXPECT_EQ(heifTypeOf("abcd" + std::string(brand)), ImageType::Heic) << brand;
    EXPECT_EQ(heifTypeOf("mif1" + std::string(brand)), ImageType::Heif) << brand;
  }
  EXPECT_EQ(heifTypeOf("mif1mif1"), ImageType::Heif);
  EXPECT_EQ(heifTypeOf("msf1iso8"), ImageType::Heif);
  EXPECT_EQ(heifTypeOf("abcdmif1"), ImageType::Heif);
}

TEST(HeifType, IsNoneForAv1AndMovies) {
  EXPECT_EQ(heifTypeOf("avifmif1"), std::nullopt);
  EXPECT_EQ(heifTypeOf("avismsf1"), std::nullopt);
  EXPECT_EQ(heifTypeOf("mif1avifmiaf"), std::nullopt);
  EXPECT_EQ(heifTypeOf("mif1avifheic"), ImageType::Heif);
  EXPECT_EQ(heifTypeOf("isomiso2avc1mp41"), std::nullopt);
  EXPECT_EQ(heifTypeOf("qt  qt  "), std::nullopt);
}

TEST(HeifType, LooksNoFurtherThanTheBox) {
  EXPECT_EQ(heifTypeOf("abcdabcdheic", 20), std::nullopt);
  EXPECT_EQ(heifTypeOf("abcdabcdheic", 24), ImageType::Heic);
  EXPECT_EQ(heifTypeOf("heicmif1", 8), std::nullopt);
  EXPECT_EQ(heifTypeOf("abcdheic", 0xffffffff), ImageType::Heic);
  EXPECT_EQ(heifType({}), std::nullopt);
}

TEST(IsTiff, KnowsBothByteOrdersAndSizes) {
  const auto known = [](std::string_view start) { return isTiff(std::as_bytes(std::span(start))); };
  using namespace std::string_view_literals;
  EXPECT_TRUE(known("II*\0...."sv));
  EXPECT_TRUE(known("MM\0*...."sv));
  EXPECT_TRUE(known("II+\0...."sv));
  EXPECT_TRUE(known("MM\0+...."sv));
  EXPECT_FALSE(known("II\0*...."sv));
  EXPECT_FALSE(known("II*"sv));
}

}  // namespace
}  // namespace vantrel
