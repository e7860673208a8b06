#include "platform/gl/tile_workshop.h"

#include <QThreadPool>
#include <algorithm>
#include <mutex>
#include <system_error>
#include <utility>

#include "platform/image/png_writer.h"

namespace vantrel {
namespace {

constexpr int kMostThreads = 8;

}  // namespace

struct TileWorkshop::Work {
  const TileSource source;
  std::mutex mutex;
  /// Guarded by mutex; empty when the workshop is gone.
  TileLoader::Notify notify;
  /// Destroyed first. Null where there is no thread to be had.
  std::unique_ptr<TileLoader> loader;

  explicit Work(const Bitmap& bitmap) : source(bitmap) {}

  void start() {
    try {
      loader = std::make_unique<TileLoader>(
          [this](const TileId& tile, const std::stop_token& stop) {
            return source.render(tile, stop);
          },
          [this] { notifyWorkshop(); }, std::min(availableProcessors(), kMostThreads));
    } catch (const std::system_error&) {
    }
  }

  void notifyWorkshop() {
    const std::lock_guard lock(mutex);
    if (notify) notify();
  }
};

TileWorkshop::TileWorkshop(const Bitmap& bitmap, TileLoader::Notify notify)
    : m_work(std::make_shared<Work>(bitmap)) {
  m_work->notify = std::move(notify);
  m_work->start();
}

TileWorkshop::~TileWorkshop() {
  want({});
  {
    const std::lock_guard lock(m_work->mutex);
    m_work->notify = nullptr;
  }
  // Freeing hundreds of megabytes takes longer than a frame, and so may a tile that is being made.
  QThreadPool::globalInstance()->start([work = std::move(m_work)]() mutable { work.reset(); });
}

const Bitmap& TileWorkshop::bitmap() const {
  return m_work->source.bitmap();
}

void TileWorkshop::want(const std::vector<TileId>& tiles) {
  if (m_work->loader) m_work->loader->want(tiles);
}

std::vector<TileLoader::Loaded> TileWorkshop::take() {
  if (!m_work->loader) return {};
  return m_work->loader->take();
}

}  // namespace vantrel
