#include "platform/player/picture_cache.h"

#include <cstdlib>

#include "platform/player/picture_times.h"

namespace vantrel {

size_t bytesOf(const VideoPicture& picture) {
  size_t bytes = 0;
  for (int i = 0; i < picture.planeCount(); ++i) {
    const PlaneView& plane = picture.planes[static_cast<size_t>(i)];
    bytes += static_cast<size_t>(std::abs(plane.stride)) * static_cast<size_t>(plane.height);
  }
  return bytes;
}

void PictureCache::insert(const TimedVideoPicture& shown) {
  const auto old = m_pictures.find(shown.time.ticks);
  if (old != m_pictures.end()) erase(old);
  m_order.push_front(shown);
  m_pictures.emplace(shown.time.ticks, m_order.begin());
  m_bytes += bytesOf(*shown.picture);
  while (m_bytes > m_mostBytes)
    erase(m_pictures.find(m_order.back().time.ticks));
}

std::optional<TimedVideoPicture> PictureCache::at(int64_t time) {
  auto picture = m_pictures.upper_bound(time);
  if (picture == m_pictures.begin()) return {};
  --picture;
  const Order::iterator place = picture->second;
  if (endOf(*place) <= time) return {};
  m_order.splice(m_order.begin(), m_order, place);
  return *place;
}

void PictureCache::erase(std::map<int64_t, Order::iterator>::iterator picture) {
  m_bytes -= bytesOf(*picture->second->picture);
  m_order.erase(picture->second);
  m_pictures.erase(picture);
}

}  // namespace vantrel
