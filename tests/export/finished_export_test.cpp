#include "export/finished_export.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temporary_folder.h"

namespace vantrel {
namespace {

constexpr size_t kMostNameBytes = 255;

QString proposed(const std::filesystem::path& source) {
  return proposedFileName(exportTitle(source), QStringLiteral("png"));
}

TEST(ExportTitle, LosesTheLastExtensionOnly) {
  EXPECT_EQ(exportTitle("/a/clip.final.mov"), u"clip.final-framed");
  EXPECT_EQ(exportTitle("photo.jpg"), u"photo-framed");
  EXPECT_EQ(exportTitle("photo"), u"photo-framed");
  EXPECT_EQ(exportTitle(".hidden"), u".hidden-framed");
  EXPECT_EQ(exportTitle("Übung 写真.png"), u"Übung 写真-framed");
  EXPECT_EQ(exportTitle("caf\xe9.png"), u"caf\uFFFD-framed");
}

TEST(ProposedFileName, IsTheTitleWithTheExtension) {
  EXPECT_EQ(proposedFileName(QStringLiteral("photo-framed"), QStringLiteral("jpg")),
            u"photo-framed.jpg");
  EXPECT_EQ(proposedFileName(QStringLiteral("photo.jpg"), QStringLiteral("jpg")), u"photo.jpg");
  EXPECT_EQ(proposedFileName(QStringLiteral("photojpg"), QStringLiteral("jpg")), u"photojpg.jpg");
}

TEST(ProposedFileName, KeepsWhatANameMayHold) {
  for (const char* name : {"two words", "He said “hi”", "a\"b\"c", "it's", "🦊", "שלום עולם",
                           ".hidden", "..", "~", ":a", "100%", "[*]", "-framed"}) {
    EXPECT_EQ(proposed(std::string(name) + ".png").toStdString(),
              std::string(name) + "-framed.png");
  }
}

TEST(ProposedFileName, FitsAFileSystem) {
  const std::string longest(251, 'n');
  EXPECT_EQ(exportTitle(longest + ".png").size(), 251 + 7) << "the title is told as it is";
  EXPECT_EQ(proposed(longest + ".png").toStdString(), std::string(244, 'n') + "-framed.png");
  EXPECT_EQ(proposed(std::string(244, 'n') + ".png").toStdString(),
            std::string(244, 'n') + "-framed.png");
  EXPECT_EQ(proposedFileName(QString(300, u'n'), QStringLiteral("png")),
            QString(251, u'n') + QStringLiteral(".png"));
}

TEST(ProposedFileName, IsCutBetweenCharacters) {
  std::string foxes, letters;
  for (int i = 0; i < 62; ++i)
    foxes += "🦊";
  EXPECT_EQ(proposed("a" + foxes + ".png").toUtf8().size(), 1 + 60 * 4 + 11);
  // A letter and its accent are one character.
  for (int i = 0; i < 83; ++i)
    letters += "e\u0301";
  EXPECT_EQ(proposed("a" + letters + ".png").toUtf8().size(), 1 + 81 * 3 + 11);
  // A family of four.
  std::string families;
  for (int i = 0; i < 10; ++i)
    families += "👨‍👩‍👧‍👦";
  EXPECT_EQ(proposed(families + ".png").toUtf8().size(), 9 * 25 + 11);
}

TEST(ProposedFileName, FitsWhereBytesAreNoText) {
  const QString name = proposed(std::string(251, '\xe9') + ".png");
  EXPECT_LE(static_cast<size_t>(name.toUtf8().size()), kMostNameBytes);
  EXPECT_TRUE(name.endsWith(u"\uFFFD-framed.png"));
}

TEST(FileSizeOf, IsNothingForAFileThatIsNotThere) {
  const testing::TemporaryFolder folder;
  testing::writeFile(folder / "five", "12345");
  EXPECT_EQ(fileSizeOf(folder / "five"), 5);
  EXPECT_EQ(fileSizeOf(folder / "missing"), 0);
}

}  // namespace
}  // namespace vantrel
