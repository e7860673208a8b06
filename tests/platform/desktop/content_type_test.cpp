#include "platform/desktop/content_type.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <system_error>

#include "platform/desktop/file_descriptor.h"
#include "support/ordinary_user.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using testing::TemporaryFolder;
using testing::writeFile;

const std::string kPngStart("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
const std::string kJpegStart("\xff\xd8\xff\xe0\0\x10JFIF\0", 11);

ContentType typeOf(const std::string& name, const std::string& bytes = {}) {
  const TemporaryFolder folder;
  writeFile(folder / name, bytes);
  return ContentType::ofFile(folder / name);
}

/// The line of the error, and "" if there is none.
std::string errorFor(const std::filesystem::path& path) {
  try {
    (void)ContentType::ofFile(path);
    return "";
  } catch (const std::system_error& error) {
    return error.what();
  }
}

struct Kind {
  const char* name;
  bool isImage;
  bool isMovie;
};

class Names : public ::testing::TestWithParam<Kind> {};

TEST_P(Names, TellTheKind) {
  const Kind kind = GetParam();
  const ContentType type = typeOf(kind.name);
  EXPECT_TRUE(type.isValid()) << kind.name;
  EXPECT_EQ(type.isImage(), kind.isImage) << kind.name;
  EXPECT_EQ(type.isMovie(), kind.isMovie) << kind.name;
}

INSTANTIATE_TEST_SUITE_P(Images, Names,
                         ::testing::Values(Kind{"a.heic", true, false}, Kind{"a.heif", true, false},
                                           Kind{"a.png", true, false}, Kind{"a.jpeg", true, false},
                                           Kind{"a.jpg", true, false}, Kind{"A.JPG", true, false},
                                           Kind{"a.tiff", true, false}, Kind{"a.tif", true, false},
                                           Kind{"a.gif", true, false}, Kind{"a.bmp", true, false},
                                           Kind{"a.webp", true, false}, Kind{"a.avif", true, false},
                                           Kind{"a.svg", true, false}));
INSTANTIATE_TEST_SUITE_P(Movies, Names,
                         ::testing::Values(Kind{"a.mov", false, true}, Kind{"a.mp4", false, true},
                                           Kind{"a.m4v", false, true}, Kind{"a.mkv", false, true},
                                           Kind{"a.webm", false, true}, Kind{"a.avi", false, true},
                                           Kind{"a.m2ts", false, true},
                                           Kind{"a.3gp", false, true}));
INSTANTIATE_TEST_SUITE_P(Others, Names,
                         ::testing::Values(Kind{"a.txt", false, false}, Kind{"a.pdf", false, false},
                                           Kind{"a.zip", false, false}));

TEST(ContentType, OfANameWithTwoMeaningsIsToldByContent) {
  std::string packets;
  for (int packet = 0; packet < 5; ++packet)
    packets += "\x47" + std::string(187, '\xff');
  EXPECT_TRUE(typeOf("a.ts", packets).isMovie());
  EXPECT_FALSE(typeOf("a.ts", "<?xml version=\"1.0\"?><!DOCTYPE TS><TS/>").isMovie());
}

TEST(ContentType, OfANamelessFileIsToldByContent) {
  EXPECT_EQ(typeOf("picture", kPngStart), ContentType::png());
  EXPECT_EQ(typeOf("picture.unheardof", kJpegStart), ContentType::jpeg());
}

TEST(ContentType, OfANamedFileIsToldByName) {
  EXPECT_EQ(typeOf("picture.png", kJpegStart), ContentType::png());
  EXPECT_EQ(typeOf("picture.tiff", "some words"), ContentType::tiff());
}

TEST(ContentType, IsInvalidForAFileOfNoKnownType) {
  EXPECT_FALSE(typeOf("data.unheardof", std::string("\0\1\2\3\4", 5)).isValid());
}

TEST(ContentType, TakesANameThatIsNoText) {
  EXPECT_EQ(typeOf("caf\xe9\xff.png"), ContentType::png());
  EXPECT_EQ(typeOf("caf\xe9\xff", kPngStart), ContentType::png());
  EXPECT_EQ(errorFor("/nowhere/caf\xe9.png"),
            "“caf\uFFFD.png” could not be opened: No such file or directory");
}

TEST(ContentType, KnowsTheExtensionsOfItsFiles) {
  for (const char16_t* name : {u"a.jpg", u"a.jpeg", u"a.JPG", u"a.b.jpg", u".jpg"})
    EXPECT_TRUE(ContentType::jpeg().isExtensionOf(QString::fromUtf16(name)));
  for (const char16_t* name : {u"a", u"jpg", u"a.png", u"a.jpg.v2", u"a.", u""})
    EXPECT_FALSE(ContentType::jpeg().isExtensionOf(QString::fromUtf16(name)));
  EXPECT_TRUE(ContentType::quickTimeMovie().isExtensionOf(QStringLiteral("a.mov")));
  EXPECT_TRUE(ContentType::png().isExtensionOf(QStringLiteral("a.png")));
  EXPECT_FALSE(ContentType().isExtensionOf(QStringLiteral("a.png")));
}

TEST(ContentType, FollowsALink) {
  const TemporaryFolder folder;
  writeFile(folder / "picture.png", kPngStart);
  std::filesystem::create_symlink("picture.png", folder / "link");
  EXPECT_EQ(ContentType::ofFile(folder / "link"), ContentType::png());
}

TEST(ContentType, OfAMissingFileIsAnError) {
  const TemporaryFolder folder;
  EXPECT_EQ(errorFor(folder / "photo.jpg"),
            "“photo.jpg” could not be opened: No such file or directory");
  EXPECT_EQ(errorFor(""), "“” could not be opened: No such file or directory");
}

TEST(ContentType, OfADirectoryIsAnError) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "photo.jpg");
  EXPECT_EQ(errorFor(folder / "photo.jpg"), "“photo.jpg” could not be opened: Is a directory");
}

TEST(ContentType, OfAFileWithoutPermissionIsAnError) {
  const TemporaryFolder folder;
  writeFile(folder / "photo.jpg", kJpegStart);
  ::chmod((folder / "photo.jpg").c_str(), 0);
  const testing::OrdinaryUser user;
  EXPECT_EQ(errorFor(folder / "photo.jpg"), "“photo.jpg” could not be opened: Permission denied");
}

TEST(ContentType, OfAPipeIsAnErrorAndDoesNotWait) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe.png").c_str(), 0600), 0);
  EXPECT_EQ(errorFor(folder / "pipe.png"), "“pipe.png” could not be opened: Not a regular file");
}

TEST(ContentType, OfADeviceIsAnError) {
  EXPECT_EQ(errorFor("/dev/zero"), "“zero” could not be opened: Not a regular file");
}

TEST(ContentType, OfASocketIsAnError) {
  const TemporaryFolder folder;
  const std::string path = (folder / "socket").string();
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(errorFor(path), "“socket” could not be opened: Not a regular file");
}

TEST(ContentType, ResolvesNamesAndAliases) {
  EXPECT_EQ(ContentType(QStringLiteral("image/pjpeg")), ContentType::jpeg());
  EXPECT_FALSE(ContentType(QStringLiteral("image/unheard-of")).isValid());
  EXPECT_FALSE(ContentType(QString()).isValid());
  EXPECT_FALSE(ContentType().isValid());
  EXPECT_EQ(ContentType(), ContentType(QString()));
}

TEST(ContentType, NamesItsExtension) {
  EXPECT_EQ(ContentType::png().preferredFilenameExtension(), u"png");
  EXPECT_EQ(ContentType::jpeg().preferredFilenameExtension(), u"jpg");
  EXPECT_EQ(ContentType::heic().preferredFilenameExtension(), u"heic");
  EXPECT_EQ(ContentType::heif().preferredFilenameExtension(), u"heif");
  EXPECT_TRUE(ContentType::tiff().preferredFilenameExtension().startsWith(u"tif"));
  EXPECT_EQ(ContentType::quickTimeMovie().preferredFilenameExtension(), u"mov");
  EXPECT_EQ(ContentType().preferredFilenameExtension(), u"");
}

TEST(ContentType, ConformsToItselfAndItsParents) {
  const ContentType scalable(QStringLiteral("image/svg+xml"));
  const ContentType markup(QStringLiteral("application/xml"));
  EXPECT_TRUE(scalable.conformsTo(scalable));
  EXPECT_TRUE(scalable.conformsTo(markup));
  EXPECT_FALSE(markup.conformsTo(scalable));
  EXPECT_FALSE(ContentType::png().conformsTo(ContentType::jpeg()));
  EXPECT_FALSE(ContentType().conformsTo(ContentType()));
  EXPECT_FALSE(ContentType::png().conformsTo(ContentType()));
}

TEST(ContentType, KnowsTheTwoOfOneContainerApart) {
  EXPECT_NE(ContentType::heic(), ContentType::heif());
  EXPECT_TRUE(ContentType::heic().conformsTo(ContentType::heif()));
  EXPECT_FALSE(ContentType::heif().conformsTo(ContentType::heic()));
  EXPECT_TRUE(ContentType::heic().isImage());
}

TEST(ContentType, RawPhotosAreImages) {
  const ContentType raw(QStringLiteral("image/x-adobe-dng"));
  EXPECT_TRUE(raw.isImage());
  EXPECT_TRUE(raw.conformsTo(ContentType::tiff()));
}

}  // namespace
}  // namespace vantrel
