#include "media/image_error.h"

#include <gtest/gtest.h>

#include "base/failure.h"

namespace vantrel {
namespace {

TEST(ImageError, SaysWhatTheUserReads) {
  const std::pair<ImageError::Case, const char*> texts[] = {
      {ImageError::unsupported, "Open a PNG, JPEG, HEIC, or TIFF image."},
      {ImageError::multipleImages,
       "Animated images and images with multiple pages are not supported."},
      {ImageError::unreadable, "This image could not be read."},
      {ImageError::invalidCrop,
       "The crop must stay inside the image and contain at least one pixel."},
      {ImageError::encodingFailed, "The cropped image could not be exported."},
  };
  for (const auto& [error, text] : texts) {
    EXPECT_EQ(ImageError(error).errorDescription(), QString::fromLatin1(text));
    EXPECT_STREQ(ImageError(error).what(), text);
    EXPECT_EQ(userMessage(std::make_exception_ptr(ImageError(error))), text);
  }
}

TEST(ImageError, IsComparedByItsCase) {
  EXPECT_EQ(ImageError(ImageError::unreadable), ImageError(ImageError::unreadable));
  EXPECT_FALSE(ImageError(ImageError::unreadable) == ImageError(ImageError::unsupported));
  EXPECT_EQ(ImageError(ImageError::invalidCrop).error(), ImageError::invalidCrop);
}

}  // namespace
}  // namespace vantrel
