#include "review/fitted_rect.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(FittedRect, LiesInTheMiddleAsLargeAsFits) {
  EXPECT_EQ(fittedRect({200, 100}, {800, 600}), QRectF(0, 100, 800, 400));
  EXPECT_EQ(fittedRect({100, 200}, {800, 600}), QRectF(250, 0, 300, 600));
  EXPECT_TRUE(fittedRect({0, 0}, {800, 600}).isEmpty());
  EXPECT_TRUE(fittedRect({10, 10}, {0, 600}).isEmpty());
}

}  // namespace
}  // namespace vantrel
