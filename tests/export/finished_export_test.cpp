#include "export/finished_export.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace vantrel {
namespace {

TEST(ExportTitle, LosesTheLastExtensionOnly) {
  EXPECT_EQ(exportTitle("/a/clip.final.mov"), u"clip.final-framed");
  EXPECT_EQ(exportTitle("photo.jpg"), u"photo-framed");
  EXPECT_EQ(exportTitle("photo"), u"photo-framed");
  EXPECT_EQ(exportTitle(".hidden"), u".hidden-framed");
  EXPECT_EQ(exportTitle("Übung 写真.png"), u"Übung 写真-framed");
  EXPECT_EQ(exportTitle("caf\xe9.png"), u"caf\uFFFD-framed");
}

TEST(FileSizeOf, IsNothingForAFileThatIsNotThere) {
  const testing::TemporaryFolder folder;
  testing::writeFile(folder / "five", "12345");
  EXPECT_EQ(fileSizeOf(folder / "five"), 5);
  EXPECT_EQ(fileSizeOf(folder / "missing"), 0);
}

}  // namespace
}  // namespace vantrel
