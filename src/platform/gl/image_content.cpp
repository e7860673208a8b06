#include "platform/gl/image_content.h"

#include <algorithm>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "platform/gl/picture_renderer.h"
#include "platform/image/png_writer.h"

namespace vantrel {
namespace {

/// Beside the tiles there is a table of columns and rows.
constexpr int64_t kMostTileBytes = PictureRenderer::kMostTextureBytes - (int64_t{1} << 20);
/// What the tiles of one view may take, so that those that stand in for them fit in too.
constexpr int64_t kMostViewBytes = kMostTileBytes / 2;
/// More waits for the next frame. About a millisecond of copying.
constexpr int64_t kMostUploadedBytes = int64_t{4} << 20;
constexpr int kMostThreads = 8;

}  // namespace

std::unique_ptr<PictureContent> makeImageContent(const Bitmap& image) {
  return std::make_unique<ImageContent>(image);
}

ImageContent::ImageContent(const Bitmap& image)
    : m_source(image),
      m_overview(m_source.pyramid().tiles(m_source.pyramid().overviewLevel())),
      m_cache(kMostTileBytes) {
  startLoader();
}

ImageContent::~ImageContent() = default;

void ImageContent::startLoader() {
  try {
    m_loader = std::make_unique<TileLoader>(
        [this](const TileId& tile, const std::stop_token& stop) {
          return m_source.render(tile, stop);
        },
        [this] { announce(); }, std::min(availableProcessors(), kMostThreads));
    m_loader->want(m_overview);
  } catch (const std::system_error&) {
  }
}

bool ImageContent::shows(const Bitmap& image) const {
  const Bitmap& own = m_source.bitmap();
  return !image.isEmpty() && image.bounds() == own.bounds() && image.row(0) == own.row(0) &&
         image.stride() == own.stride() && image.layout() == own.layout() &&
         &image.color() == &own.color();
}

int64_t ImageContent::textureBytes() const {
  return m_cache.bytes() + m_painter.textureBytes();
}

void ImageContent::announce() {
  if (m_isAnnounced.exchange(true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        m_isAnnounced = false;
        if (!m_isComplete) Q_EMIT improved();
      },
      Qt::QueuedConnection);
}

void ImageContent::draw(const PictureView& view) {
  const TilePyramid& pyramid = m_source.pyramid();
  const auto placement = PicturePlacement::of(view, pyramid.width(), pyramid.height());
  if (!placement) {
    wantMissing({}, m_overview);
    m_isComplete = true;
    return;
  }
  const TilePlan plan = TilePlan::of(pyramid, *placement, kMostViewBytes);
  const std::vector<TileId> overview = middleFirst(pyramid, *placement, m_overview);
  m_cache.beginFrame();
  for (const TileId& tile : plan.tiles)
    m_cache.use(tile);
  std::vector<TileId> wanted = plan.tiles;
  wanted.insert(wanted.end(), overview.begin(), overview.end());
  takeLoaded(wanted);
  const bool isAllUploaded = upload(wanted);
  wantMissing(plan.tiles, overview);
  m_painter.draw(view, *placement, quads(plan), !m_source.bitmap().hasAlpha());
  m_isComplete = std::all_of(plan.tiles.begin(), plan.tiles.end(),
                             [this](const TileId& tile) { return m_cache.contains(tile); });
  if (!isAllUploaded) announce();
}

void ImageContent::takeLoaded(const std::vector<TileId>& wanted) {
  if (m_loader) {
    for (TileLoader::Loaded& loaded : m_loader->take()) {
      m_made.insert_or_assign(loaded.tile, std::move(loaded.pixels));
    }
  }
  if (m_made.empty()) return;
  const std::unordered_set<TileId> kept(wanted.begin(), wanted.end());
  std::erase_if(m_made, [&](const auto& made) {
    return !kept.contains(made.first) || m_cache.contains(made.first);
  });
}

bool ImageContent::upload(const std::vector<TileId>& tiles) {
  int64_t uploaded = 0;
  for (const TileId& tile : tiles) {
    if (m_made.empty()) return true;
    const auto made = m_made.find(tile);
    if (made == m_made.end()) continue;
    if (uploaded >= kMostUploadedBytes) return false;
    const int64_t bytes = m_source.pyramid().bytes(tile);
    TilePainter::remove(m_cache.makeRoom(bytes));
    if (!m_cache.hasRoom(bytes)) return true;
    m_cache.insert(tile, TilePainter::upload(made->second), bytes,
                   tile.level == m_source.pyramid().overviewLevel());
    m_made.erase(made);
    uploaded += bytes;
  }
  return true;
}

void ImageContent::wantMissing(const std::vector<TileId>& tiles,
                               const std::vector<TileId>& overview) {
  if (!m_loader) return;
  std::vector<TileId> missing;
  std::unordered_set<TileId> seen;
  const auto add = [&](const TileId& tile) {
    if (m_cache.contains(tile) || m_made.contains(tile) || !seen.insert(tile).second) return;
    missing.push_back(tile);
  };
  // In turn, so that an overview comes about however fast the view moves.
  for (size_t index = 0; index < std::max(tiles.size(), overview.size()); ++index) {
    if (index < tiles.size()) add(tiles[index]);
    if (index < overview.size()) add(overview[index]);
  }
  m_loader->want(missing);
}

std::vector<TileQuad> ImageContent::quads(const TilePlan& plan) {
  const TilePyramid& pyramid = m_source.pyramid();
  const auto isReady = [this](const TileId& tile) { return m_cache.contains(tile); };
  std::vector<TileQuad> result;
  for (const TilePatch& patch : patches(pyramid, plan, isReady)) {
    m_cache.use(patch.tile);
    result.push_back({m_cache.texture(patch.tile), pyramid.source(patch.region),
                      pyramid.texels(patch.tile), int64_t{1} << patch.tile.level});
  }
  return result;
}

void ImageContent::retire() {
  m_loader.reset();
}

void ImageContent::release() {
  TilePainter::remove(m_cache.clear());
  m_painter.release();
  m_isComplete = false;
}

}  // namespace vantrel
