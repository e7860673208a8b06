#pragma once

// Private to this folder.

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "platform/gl/tile_pyramid.h"

namespace vantrel {

/// Knows the textures of tiles and what they take, within a budget; what goes first is what has not
/// been used for the longest time. It calls no OpenGL.
class TileCache {
 public:
  /// In bytes.
  explicit TileCache(int64_t budget) : m_budget(budget) {}

  [[nodiscard]] int64_t bytes() const { return m_bytes; }
  [[nodiscard]] bool contains(const TileId& tile) const { return m_entries.contains(tile); }
  /// Of a tile that it contains.
  [[nodiscard]] uint32_t texture(const TileId& tile) const { return m_entries.at(tile).texture; }

  /// Begins a new frame. What is used in it stays until the next one begins.
  void beginFrame() { ++m_frame; }
  void use(const TileId& tile);

  /// Forgets unused tiles until `bytes` more fit, or until there are none; returns the textures to
  /// delete.
  [[nodiscard]] std::vector<uint32_t> makeRoom(int64_t bytes);
  [[nodiscard]] bool hasRoom(int64_t bytes) const { return m_bytes + bytes <= m_budget; }
  /// A tile that it does not contain, used in this frame. `isKept`: stays until clear().
  void insert(const TileId& tile, uint32_t texture, int64_t bytes, bool isKept);
  /// Forgets all tiles; returns the textures to delete.
  [[nodiscard]] std::vector<uint32_t> clear();

 private:
  struct Entry {
    uint32_t texture = 0;
    int64_t bytes = 0;
    int64_t lastFrame = 0;
    bool isKept = false;
  };

  int64_t m_budget;
  int64_t m_bytes = 0;
  int64_t m_frame = 0;
  std::unordered_map<TileId, Entry> m_entries;
};

}  // namespace vantrel
