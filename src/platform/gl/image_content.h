#pragma once

// Private to this folder.

#include <atomic>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/gl/picture_content.h"
#include "platform/gl/tile_cache.h"
#include "platform/gl/tile_loader.h"
#include "platform/gl/tile_painter.h"
#include "platform/gl/tile_plan.h"
#include "platform/gl/tile_source.h"

namespace vantrel {

/// Draws a bitmap from tiles. Those of its overview, a level that is small enough, are made first
/// of all and stay.
class ImageContent final : public PictureContent {
  Q_OBJECT

 public:
  /// Not empty.
  explicit ImageContent(const Bitmap& image);
  ~ImageContent() override;

  [[nodiscard]] bool shows(const Bitmap& image) const override;
  [[nodiscard]] bool isComplete() const override { return m_isComplete; }
  [[nodiscard]] int64_t textureBytes() const override;
  void draw(const PictureView& view) override;
  void retire() override;
  void release() override;

 private:
  void startLoader();
  void takeLoaded(const std::vector<TileId>& wanted);
  /// Makes textures of tiles that have been made, in this order. False when some had to be left for
  /// another frame.
  [[nodiscard]] bool upload(const std::vector<TileId>& tiles);
  void wantMissing(const std::vector<TileId>& tiles, const std::vector<TileId>& overview);
  [[nodiscard]] std::vector<TileQuad> quads(const TilePlan& plan);
  /// Emits `improved` from the event loop, once for any number of calls. Any thread.
  void announce();

  TileSource m_source;
  const std::vector<TileId> m_overview;
  TileCache m_cache;
  TilePainter m_painter;
  /// Made but not in a texture yet.
  std::unordered_map<TileId, TilePixels> m_made;
  bool m_isComplete = false;
  std::atomic<bool> m_isAnnounced = false;
  /// Uses m_source and announces: destroyed first. Null when retired, or where there is no thread
  /// to be had.
  std::unique_ptr<TileLoader> m_loader;
};

}  // namespace vantrel
