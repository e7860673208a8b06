#include "platform/gl/tile_loader.h"

#include <exception>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace vantrel {

TileLoader::TileLoader(Render render, Notify notify, int threads)
    : m_render(std::move(render)), m_notify(std::move(notify)) {
  for (int thread = 0; thread < threads; ++thread) {
    try {
      m_threads.emplace_back([this](const std::stop_token& stop) { work(stop); });
    } catch (const std::system_error&) {
      if (m_threads.empty()) throw;
      return;
    }
  }
}

TileLoader::~TileLoader() {
  want({});
  for (std::jthread& thread : m_threads)
    thread.request_stop();
}

void TileLoader::want(const std::vector<TileId>& tiles) {
  {
    const std::lock_guard lock(m_mutex);
    std::unordered_set<TileId> made;
    for (const Loaded& loaded : m_loaded)
      made.insert(loaded.tile);
    const std::unordered_set<TileId> wanted(tiles.begin(), tiles.end());
    for (auto& [tile, stop] : m_running) {
      if (!wanted.contains(tile)) stop.request_stop();
    }
    m_waiting.clear();
    for (auto tile = tiles.rbegin(); tile != tiles.rend(); ++tile) {
      const auto running = m_running.find(*tile);
      const bool isRunning = running != m_running.end() && !running->second.stop_requested();
      if (!isRunning && !made.contains(*tile)) m_waiting.push_back(*tile);
    }
  }
  m_changed.notify_all();
}

std::vector<TileLoader::Loaded> TileLoader::take() {
  const std::lock_guard lock(m_mutex);
  return std::exchange(m_loaded, {});
}

std::optional<TileId> TileLoader::nextTile(std::unique_lock<std::mutex>& lock,
                                           const std::stop_token& stop) {
  // A tile that was given up and is wanted again waits for its thread to notice.
  const auto find = [this] {
    auto tile = m_waiting.rbegin();
    while (tile != m_waiting.rend() && m_running.contains(*tile))
      ++tile;
    return tile;
  };
  if (!m_changed.wait(lock, stop, [&] { return find() != m_waiting.rend(); })) return std::nullopt;
  const auto tile = find();
  const TileId result = *tile;
  m_waiting.erase(std::next(tile).base());
  return result;
}

std::optional<TilePixels> TileLoader::render(const TileId& tile,
                                             const std::stop_token& stop) const noexcept {
  try {
    return m_render(tile, stop);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

void TileLoader::work(const std::stop_token& stop) {
  std::unique_lock lock(m_mutex);
  while (const std::optional<TileId> tile = nextTile(lock, stop)) {
    const std::stop_token given = m_running.try_emplace(*tile).first->second.get_token();
    lock.unlock();
    std::optional<TilePixels> pixels = render(*tile, given);
    lock.lock();
    m_running.erase(*tile);
    if (pixels) {
      std::erase(m_waiting, *tile);
      m_loaded.push_back({*tile, std::move(*pixels)});
    }
    const bool isFirst = pixels && m_loaded.size() == 1;
    lock.unlock();
    m_changed.notify_all();
    if (isFirst) m_notify();
    lock.lock();
  }
}

}  // namespace vantrel
