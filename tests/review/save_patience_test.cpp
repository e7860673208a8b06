#include "review/save_patience.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(SavePatience, LastsThroughASaveThatIsOverInAMoment) {
  EXPECT_FALSE(SavePatience::isOver(0, 0));
  EXPECT_FALSE(SavePatience::isOver(299, 0.01));
  EXPECT_FALSE(SavePatience::isOver(300, 0.5));
  EXPECT_FALSE(SavePatience::isOver(999, 0.99));
}

TEST(SavePatience, EndsEarlyWhenMuchIsToCome) {
  EXPECT_TRUE(SavePatience::isOver(300, 0.3));
  EXPECT_FALSE(SavePatience::isOver(300, 0.31));
  EXPECT_TRUE(SavePatience::isOver(700, 0.5));
}

TEST(SavePatience, EndsAfterASecondWhateverIsKnown) {
  EXPECT_FALSE(SavePatience::isOver(999, 0));
  EXPECT_TRUE(SavePatience::isOver(1000, 0));
  EXPECT_TRUE(SavePatience::isOver(1000, 1));
}

}  // namespace
}  // namespace vantrel
