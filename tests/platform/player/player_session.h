#pragma once

#include <QtTest>
#include <functional>
#include <vector>

#include "platform/player/barcoded_film.h"
#include "platform/player/movie_player.h"

namespace vantrel::testing {

/// Runs the event loop until something is so. False when it takes too long.
inline bool waitUntil(const std::function<bool()>& isSo) {
  constexpr int kPatience = 60'000;
  return QTest::qWaitFor(isSo, kPatience);
}

/// The number of the picture that a player shows; −1 if it shows none.
inline int shownNumber(const Player& player) {
  return barcodeOf(player.picture().get());
}

/// Seeks and waits until that has landed; the number of the picture, −1 if it has not.
inline int numberSoughtAt(Player& player, MediaTime time) {
  std::optional<bool> answer;
  player.seek(time, [&answer](bool finished) { answer = finished; });
  if (!waitUntil([&answer] { return answer.has_value(); }) || !*answer) return -1;
  return shownNumber(player);
}

}  // namespace vantrel::testing
