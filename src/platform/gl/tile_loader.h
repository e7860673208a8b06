#pragma once

// Private to this folder.

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <unordered_map>
#include <vector>

#include "platform/gl/tile_pyramid.h"

namespace vantrel {

/// Makes tiles on threads of its own, those that are wanted most first. Made, asked and destroyed
/// on one thread; the destructor cancels and joins.
class TileLoader {
 public:
  /// Called on several threads at once. What it throws, Cancelled or for want of memory, leaves the
  /// tile unmade.
  using Render = std::function<TilePixels(const TileId& tile, const std::stop_token& stop)>;
  /// Called on a thread of the loader when there is something to take after there was nothing.
  using Notify = std::function<void()>;
  struct Loaded {
    TileId tile;
    TilePixels pixels;
  };

  /// Throws std::system_error where there is not even one thread to be had.
  TileLoader(Render render, Notify notify, int threads);
  ~TileLoader();
  TileLoader(const TileLoader&) = delete;
  TileLoader& operator=(const TileLoader&) = delete;

  /// Makes these tiles, in this order, and no others: what was wanted before and is not any more is
  /// given up. Tiles that wait to be taken are not made again.
  void want(const std::vector<TileId>& tiles);
  /// What has been made since the last call, wanted or not.
  [[nodiscard]] std::vector<Loaded> take();

 private:
  void work(const std::stop_token& stop);
  /// Locked. Absent when the loader ends.
  [[nodiscard]] std::optional<TileId> nextTile(std::unique_lock<std::mutex>& lock,
                                               const std::stop_token& stop);
  [[nodiscard]] std::optional<TilePixels> render(const TileId& tile,
                                                 const std::stop_token& stop) const noexcept;

  const Render m_render;
  const Notify m_notify;

  std::mutex m_mutex;
  std::condition_variable_any m_changed;
  // Guarded by m_mutex.
  /// The most wanted last.
  std::vector<TileId> m_waiting;
  std::unordered_map<TileId, std::stop_source> m_running;
  std::vector<Loaded> m_loaded;

  /// Destroyed first.
  std::vector<std::jthread> m_threads;
};

}  // namespace vantrel
