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

TEST(ConvertedEdits, CountMediaInTheTrackTicks) {
  EXPECT_EQ(convertedEdits({{100, -1}, {400, 21}, {100, 50, 0x8000}}, 1000, 0, 48'000, 48'000, 600),
            (Edits{{100, -1}, {400, 1008}, {100, 2400, 0x8000}}));
}

TEST(ConvertedEdits, FollowMediaThatStartsLater) {
  EXPECT_EQ(convertedEdits({{600, 2000}}, 1000, 1000, 9000, 1000, 600), (Edits{{600, 1000}}));
  EXPECT_EQ(convertedEdits({{600, 500}}, 1000, 1000, 9000, 1000, 600),
            (Edits{{300, -1}, {300, 0}}));
  EXPECT_EQ(convertedEdits({{600, 0}, {600, 1000}}, 1000, 1000, 9000, 1000, 600),
            (Edits{{600, -1}, {600, 0}}));
}

TEST(ConvertedEdits, LastAsLongAsTheSamplesWhereTheyAreOpen) {
  EXPECT_EQ(convertedEdits({{0, 1024}}, 48'000, 0, 25'024, 48'000, 1000), (Edits{{500, 1024}}));
  EXPECT_EQ(convertedEdits({{0, 0}, {600, 0}}, 600, 0, 600, 600, 600), (Edits{{0, 0}, {600, 0}}));
}

}  // namespace
}  // namespace vantrel
