#include "platform/movie/pass_over_rule.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(PassOverRule, KeepsEveryPictureUnlessAsked) {
  PassOverRule rule;
  EXPECT_FALSE(rule.mayLeaveOut(0, 40));
  EXPECT_EQ(rule.latest(), INT64_MIN);
}

TEST(PassOverRule, LeavesOutWhatEndsByTheTime) {
  PassOverRule rule;
  rule.passOverUntil(120);
  EXPECT_TRUE(rule.mayLeaveOut(40, 40));
  EXPECT_TRUE(rule.mayLeaveOut(80, 40));
  EXPECT_FALSE(rule.mayLeaveOut(81, 40));
  EXPECT_EQ(rule.latest(), 80);
}

TEST(PassOverRule, TellsTheLatestInTheOrderOfShowing) {
  PassOverRule rule;
  rule.passOverUntil(400);
  EXPECT_TRUE(rule.mayLeaveOut(160, 40));
  EXPECT_TRUE(rule.mayLeaveOut(80, 40));
  EXPECT_EQ(rule.latest(), 160);
  rule.passOverUntil(400);
  EXPECT_EQ(rule.latest(), INT64_MIN);
}

TEST(PassOverRule, TakesEachPictureToLastAsLongAsTheLongestSoFar) {
  PassOverRule rule;
  rule.passOverUntil(1000);
  EXPECT_TRUE(rule.mayLeaveOut(300, 110));
  // Its packet lasts until the next is decoded, the picture itself may be shown until 1010.
  EXPECT_FALSE(rule.mayLeaveOut(900, 20));
  EXPECT_TRUE(rule.mayLeaveOut(890, 20));
}

TEST(PassOverRule, ForgetsDurationsWhereReadingStartsAnew) {
  PassOverRule rule;
  rule.passOverUntil(1000);
  EXPECT_TRUE(rule.mayLeaveOut(0, 500));
  EXPECT_FALSE(rule.mayLeaveOut(900, 20));
  rule.restart();
  EXPECT_TRUE(rule.mayLeaveOut(900, 20));
}

TEST(PassOverRule, KeepsEveryPictureAgainOnceToldSo) {
  PassOverRule rule;
  rule.passOverUntil(1000);
  rule.passOverUntil(INT64_MIN);
  EXPECT_FALSE(rule.mayLeaveOut(0, 40));
}

}  // namespace
}  // namespace vantrel
