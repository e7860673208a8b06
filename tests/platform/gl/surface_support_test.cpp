#include <gtest/gtest.h>

#include "platform/gl/picture_surface.h"

namespace vantrel {
namespace {

TEST(PictureSurface, IsNotSupportedWhereNoWindowShowsIt) {
  EXPECT_FALSE(PictureSurface::isSupported());
}

}  // namespace
}  // namespace vantrel
