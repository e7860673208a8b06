#include "platform/movie/key_frame_rule.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantrel {
namespace {

/// The times among `times` that become key frames.
std::vector<int64_t> keyFrames(int64_t longestInterval, const std::vector<int64_t>& times) {
  KeyFrameRule rule(longestInterval);
  std::vector<int64_t> keys;
  for (size_t index = 0; index < times.size(); ++index) {
    const auto next = index + 1 < times.size() ? std::optional(times[index + 1]) : std::nullopt;
    if (rule.isKeyFrame(times[index], next)) keys.push_back(times[index]);
  }
  return keys;
}

TEST(KeyFrameRule, MakesTheFirstPictureAKeyFrame) {
  EXPECT_EQ(keyFrames(100, {7}), std::vector<int64_t>({7}));
}

TEST(KeyFrameRule, LetsAPictureStandExactlyTheLimitBehindTheLastKeyFrame) {
  EXPECT_EQ(keyFrames(20, {0, 10, 20}), std::vector<int64_t>({0}));
}

TEST(KeyFrameRule, PutsTheKeyFrameBeforeTheLimitIsPassed) {
  EXPECT_EQ(keyFrames(20, {0, 10, 20, 30, 40, 50}), std::vector<int64_t>({0, 20, 40}));
}

TEST(KeyFrameRule, MakesBothSidesOfAGapLongerThanTheLimitKeyFrames) {
  EXPECT_EQ(keyFrames(20, {0, 5, 100, 105, 110}), std::vector<int64_t>({0, 5, 100}));
}

TEST(KeyFrameRule, FollowsUnevenTimes) {
  EXPECT_EQ(keyFrames(20, {0, 1, 2, 19, 24, 30, 39, 43}), std::vector<int64_t>({0, 19, 39}));
}

TEST(KeyFrameRule, MakesEveryPictureAKeyFrameWhereAllStandFurtherApart) {
  EXPECT_EQ(keyFrames(2, {0, 10, 20, 30}), std::vector<int64_t>({0, 10, 20, 30}));
}

}  // namespace
}  // namespace vantrel
