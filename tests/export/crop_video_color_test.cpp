#include "export/crop_video_color.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(CropVideoColor, NamesTheCodesOfH273) {
  const CropVideoColor color = CropVideoColor::of({9, 16, 9});
  EXPECT_EQ(color.primaries, "bt2020");
  EXPECT_EQ(color.transferFunction, "smpte2084");
  EXPECT_EQ(color.matrix, "bt2020nc");
  EXPECT_EQ(CropVideoColor::of({1, 1, 1}), (CropVideoColor{"bt709", "bt709", "bt709"}));
  EXPECT_EQ(CropVideoColor::of({12, 18, 0}), (CropVideoColor{"smpte432", "arib-std-b67", "gbr"}));
}

TEST(CropVideoColor, LeavesOutWhatIsNotSpecified) {
  EXPECT_EQ(CropVideoColor::of({}), CropVideoColor{});
  EXPECT_EQ(CropVideoColor::of({0, 3, 2}), CropVideoColor{});
  EXPECT_EQ(CropVideoColor::of({-1, 4711, 1000}), CropVideoColor{});
}

TEST(CropVideoColor, GivesBackTheCodesItWasMadeOf) {
  for (int code = 0; code < 30; ++code) {
    const CropVideoColor color = CropVideoColor::of({code, code, code});
    const ColorTags tags = color.tags();
    EXPECT_EQ(tags.primaries, color.primaries ? code : ColorTags::kUnspecified);
    EXPECT_EQ(tags.transfer, color.transferFunction ? code : ColorTags::kUnspecified);
    EXPECT_EQ(tags.matrix, color.matrix ? code : ColorTags::kUnspecified);
  }
}

TEST(CropVideoColor, DoesNotSpecifyWhatHasAnUnknownName) {
  EXPECT_EQ((CropVideoColor{"colourful", "", "bt2020"}.tags()), ColorTags{});
}

TEST(CropVideoColor, IsHdrByItsTransferFunctionAlone) {
  for (int transfer = 0; transfer < 30; ++transfer) {
    EXPECT_EQ(CropVideoColor::of({1, transfer, 1}).isHDR(), transfer == 16 || transfer == 18);
  }
  EXPECT_FALSE(CropVideoColor{}.isHDR());
  EXPECT_FALSE(CropVideoColor::of({9, 14, 9}).isHDR());
}

}  // namespace
}  // namespace vantrel
