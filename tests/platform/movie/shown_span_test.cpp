#include "platform/movie/shown_span.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using Edits = std::vector<QuickTimeEdit>;

TEST(ShownSpan, ShowsATrackThatStartsWithTheMovieInOneEdit) {
  EXPECT_EQ(editsShowing(0, 1200, 0, 600, 1000), (Edits{{2000, 0}}));
}

TEST(ShownSpan, StartsAtTheFirstPictureWhereDecodingStartsBeforeIt) {
  EXPECT_EQ(editsShowing(0, 1200, -40, 600, 600), (Edits{{1200, 40}}));
}

TEST(ShownSpan, DelaysATrackThatStartsLater) {
  EXPECT_EQ(editsShowing(300, 1200, 280, 600, 600), (Edits{{300, -1}, {900, 20}}));
}

TEST(ShownSpan, LeavesOutWhatLiesBeforeTheMovie) {
  EXPECT_EQ(editsShowing(-2112, 48000, -2112, 48000, 600), (Edits{{600, 2112}}));
}

TEST(ShownSpan, LetsStartAndLengthAddUpToTheRoundedEnd) {
  // 0.55 and 1.1 ticks of the movie.
  EXPECT_EQ(editsShowing(55, 110, 55, 1000, 10), (Edits{{1, -1}, {1, 0}}));
}

TEST(ShownSpan, ShowsEvenTheShortestTrack) {
  EXPECT_EQ(editsShowing(0, 1, 0, 90'000, 600), (Edits{{1, 0}}));
}

}  // namespace
}  // namespace vantrel
