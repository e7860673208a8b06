#include "platform/movie/movie_error.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace vantrel {
namespace {

TEST(MovieError, SaysWhatWasDoneToWhichFileAndWhyInTheLibrarysWords) {
  const int invalidData = -1094995529;  // AVERROR_INVALIDDATA
  const MovieError error("/films/clip.mov", FileAction::Open, invalidData);
  EXPECT_STREQ(error.what(),
               "“clip.mov” could not be opened: Invalid data found when processing input");
  EXPECT_EQ(error.code(), invalidData);
}

TEST(MovieError, SaysWhatTheSystemSaysOfItsErrors) {
  EXPECT_STREQ(MovieError("clip.mov", FileAction::Save, -ENOSPC).what(),
               "“clip.mov” could not be saved: No space left on device");
}

TEST(MovieError, TakesWordsOfOurOwn) {
  const MovieError error("clip.mov", FileAction::Read, "The file ends too early");
  EXPECT_STREQ(error.what(), "“clip.mov” could not be read: The file ends too early");
  EXPECT_EQ(error.code(), 0);
}

}  // namespace
}  // namespace vantrel
