#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <optional>

#include "platform/movie/video_picture_reader.h"

namespace vantrel {

/// Pictures of one movie by the time at which they are shown, as many as there is room for: those
/// that have not been asked for longest make room for others. All times have one timescale. One
/// thread at a time.
class PictureCache final {
 public:
  static constexpr size_t kMostBytes = size_t{256} << 20;

  /// Room for so many bytes of planes.
  explicit PictureCache(size_t mostBytes = kMostBytes) : m_mostBytes(mostBytes) {}

  /// Takes the place of a picture of the same time.
  void insert(const TimedVideoPicture& shown);
  /// The one that is shown at this time, in ticks.
  [[nodiscard]] std::optional<TimedVideoPicture> at(int64_t time);

  [[nodiscard]] size_t bytes() const { return m_bytes; }
  [[nodiscard]] size_t count() const { return m_pictures.size(); }
  [[nodiscard]] size_t mostBytes() const { return m_mostBytes; }

 private:
  /// In the order of their use, the latest first.
  using Order = std::list<TimedVideoPicture>;

  void erase(std::map<int64_t, Order::iterator>::iterator picture);

  const size_t m_mostBytes;
  size_t m_bytes = 0;
  Order m_order;
  /// By their start.
  std::map<int64_t, Order::iterator> m_pictures;
};

/// Bytes of the picture's planes.
[[nodiscard]] size_t bytesOf(const VideoPicture& picture);

}  // namespace vantrel
