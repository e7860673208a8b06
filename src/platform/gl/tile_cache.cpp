#include "platform/gl/tile_cache.h"

#include <algorithm>
#include <utility>

namespace vantrel {

void TileCache::use(const TileId& tile) {
  if (const auto entry = m_entries.find(tile); entry != m_entries.end()) {
    entry->second.lastFrame = m_frame;
  }
}

std::vector<uint32_t> TileCache::makeRoom(int64_t bytes) {
  std::vector<uint32_t> textures;
  if (hasRoom(bytes)) return textures;
  std::vector<std::pair<int64_t, TileId>> unused;
  for (const auto& [tile, entry] : m_entries) {
    if (!entry.isKept && entry.lastFrame != m_frame) unused.emplace_back(entry.lastFrame, tile);
  }
  std::sort(unused.begin(), unused.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  for (const auto& [frame, tile] : unused) {
    if (hasRoom(bytes)) break;
    const auto entry = m_entries.find(tile);
    m_bytes -= entry->second.bytes;
    textures.push_back(entry->second.texture);
    m_entries.erase(entry);
  }
  return textures;
}

void TileCache::insert(const TileId& tile, uint32_t texture, int64_t bytes, bool isKept) {
  m_entries[tile] = {texture, bytes, m_frame, isKept};
  m_bytes += bytes;
}

std::vector<uint32_t> TileCache::clear() {
  std::vector<uint32_t> textures;
  textures.reserve(m_entries.size());
  for (const auto& [tile, entry] : m_entries)
    textures.push_back(entry.texture);
  m_entries.clear();
  m_bytes = 0;
  return textures;
}

}  // namespace vantrel
