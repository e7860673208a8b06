#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <chrono>
#include <functional>
#include <optional>

#include "platform/player/barcoded_film.h"
#include "platform/player/movie_player.h"

namespace vantrel::testing {

/// Runs the event loop until something is so. False when it takes too long.
inline bool waitUntil(const std::function<bool()>& isSo) {
  QTimer patience;
  patience.setSingleShot(true);
  patience.start(std::chrono::seconds(60));
  while (!isSo() && patience.isActive())
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  return isSo();
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
