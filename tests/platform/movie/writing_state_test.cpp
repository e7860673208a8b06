#include "platform/movie/writing_state.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace vantrel {
namespace {

using Status = WritingState::Status;

TEST(WritingState, GoesFromUnknownThroughWritingToCompleted) {
  WritingState state;
  EXPECT_EQ(state.status(), Status::unknown);
  EXPECT_TRUE(state.begin());
  EXPECT_TRUE(state.isWriting());
  EXPECT_FALSE(state.begin());
  state.complete();
  EXPECT_EQ(state.status(), Status::completed);
  EXPECT_FALSE(state.stopToken().stop_requested());
}

TEST(WritingState, KeepsTheFirstOutcomeWithItsError) {
  WritingState state;
  ASSERT_TRUE(state.begin());
  state.fail(std::make_exception_ptr(std::runtime_error("first")));
  state.fail(std::make_exception_ptr(std::runtime_error("second")));
  state.cancel();
  EXPECT_EQ(state.status(), Status::failed);
  try {
    std::rethrow_exception(state.error());
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "first");
  }
  EXPECT_TRUE(state.stopToken().stop_requested());
}

TEST(WritingState, StopsWorkWhenCancelledAndCannotBeginThen) {
  WritingState state;
  state.cancel();
  EXPECT_EQ(state.status(), Status::cancelled);
  EXPECT_TRUE(state.stopToken().stop_requested());
  EXPECT_FALSE(state.begin());
  state.complete();
  EXPECT_EQ(state.status(), Status::cancelled);
}

}  // namespace
}  // namespace vantrel
