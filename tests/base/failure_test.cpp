#include "base/failure.h"

#include <gtest/gtest.h>

#include <new>
#include <system_error>

#include "base/cancelled.h"

namespace vantrel {
namespace {

TEST(UserMessage, IsTheMessageOfAFailure) {
  EXPECT_EQ(userMessage(std::make_exception_ptr(Failure("It is so."))), "It is so.");
}

TEST(UserMessage, IsTheWordsOfTheSystem) {
  const std::system_error error(ENOENT, std::generic_category(), "photo.jpg");
  EXPECT_EQ(userMessage(std::make_exception_ptr(error)), "photo.jpg: No such file or directory");
}

TEST(UserMessage, IsOneLineWhateverIsThrown) {
  EXPECT_EQ(userMessage(std::make_exception_ptr(Failure("two\nlines"))), "two lines");
  EXPECT_EQ(userMessage(std::make_exception_ptr(std::bad_alloc())), "There is not enough memory.");
  EXPECT_EQ(userMessage(std::make_exception_ptr(42)), "An unknown error occurred.");
}

TEST(ThrowIfCancelled, ThrowsOnlyAfterARequest) {
  std::stop_source source;
  EXPECT_NO_THROW(throwIfCancelled(source.get_token()));
  source.request_stop();
  EXPECT_THROW(throwIfCancelled(source.get_token()), Cancelled);
  EXPECT_NO_THROW(throwIfCancelled({}));
}

}  // namespace
}  // namespace vantrel
