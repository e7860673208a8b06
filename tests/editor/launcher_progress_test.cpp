#include "editor/launcher_progress.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using Shown = LauncherProgress::Shown;

TEST(LauncherProgress, ShowsTheMeanOfAllThatRun) {
  LauncherProgress progress;
  EXPECT_EQ(progress.take({0.25}), (Shown{true, 25}));
  EXPECT_EQ(progress.take({0.25, 0.75}), (Shown{true, 50}));
  EXPECT_EQ(progress.take({0.75}), (Shown{true, 75}));
}

TEST(LauncherProgress, IsGoneWhenNothingRuns) {
  LauncherProgress progress;
  EXPECT_EQ(progress.take({}), std::nullopt);
  EXPECT_EQ(progress.take({0}), (Shown{true, 0}));
  EXPECT_EQ(progress.take({}), (Shown{false, 0}));
  EXPECT_EQ(progress.take({}), std::nullopt);
}

TEST(LauncherProgress, ChangesByWholePercentsOnly) {
  LauncherProgress progress;
  EXPECT_EQ(progress.take({0.101}), (Shown{true, 10}));
  EXPECT_EQ(progress.take({0.109}), std::nullopt);
  EXPECT_EQ(progress.take({0.111}), (Shown{true, 11}));
  int changes = 0;
  for (int step = 0; step <= 100'000; ++step) {
    if (progress.take({step / 100'000.0})) ++changes;
  }
  EXPECT_EQ(changes, 101);
}

TEST(LauncherProgress, IsWholeOnlyWhenAllIsDone) {
  LauncherProgress progress;
  EXPECT_EQ(progress.take({0.9999}), (Shown{true, 99}));
  EXPECT_EQ(progress.take({1, 1}), (Shown{true, 100}));
  EXPECT_EQ(progress.take({1.5}), std::nullopt);
}

}  // namespace
}  // namespace vantrel
