#include "canvas/crop_description.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(CropDescription, TellsSizeAndPlaceOfTheCrop) {
  EXPECT_EQ(CropDescription::ofCrop({12, 30, 88, 70}, {2020, 1180}),
            QStringLiteral("1920 × 1080 pixels at 12, 30"));
  EXPECT_EQ(CropDescription::ofCrop({}, {30000, 10}), QStringLiteral("30000 × 10 pixels at 0, 0"));
}

TEST(CropDescription, TellsTheMarginsOfAHandle) {
  const CropMargins crop{1, 2, 3, 4};
  EXPECT_EQ(CropDescription::ofHandle(CropHandle::topLeft, crop),
            QStringLiteral("Top 2, left 1 pixels"));
  EXPECT_EQ(CropDescription::ofHandle(CropHandle::bottomRight, crop),
            QStringLiteral("Bottom 4, right 3 pixels"));
  EXPECT_EQ(CropDescription::ofHandle(CropHandle::right, crop), QStringLiteral("Right 3 pixels"));
}

TEST(CropDescription, NamesEachHandle) {
  QStringList names;
  for (const CropHandle handle : kCropHandles)
    names << CropDescription::nameOf(handle);
  EXPECT_EQ(names.join(QStringLiteral(", ")),
            QStringLiteral("Top left handle, Top handle, Top right handle, Right handle, "
                           "Bottom right handle, Bottom handle, Bottom left handle, Left handle"));
}

}  // namespace
}  // namespace vantrel
