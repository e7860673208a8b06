#include "platform/player/movie_pictures.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/player/picture_times.h"

namespace vantrel {
namespace {

/// How far in front of the last picture another one makes a step back, and how much in front of it
/// is kept for the next steps, in seconds.
constexpr double kStepBack = 2, kKeptInFront = 1;
/// The part of the cache that such pictures may fill.
constexpr size_t kPartInFront = 2;
/// More than any movie lasts, in seconds.
constexpr int64_t kLongest = int64_t{1} << 30;

}  // namespace

MoviePictures::MoviePictures(const Movie& movie, const MovieTrack& track,
                             const std::stop_token& stop, size_t mostBytes)
    : m_reader(movie, track, stop), m_cache(mostBytes) {}

std::optional<TimedVideoPicture> MoviePictures::at(MediaTime time) {
  m_landed = at(ticks(time));
  return m_landed;
}

std::optional<TimedVideoPicture> MoviePictures::behind(const TimedVideoPicture& shown,
                                                       MediaTime atLeast) {
  const int64_t time = std::max(endOf(shown), ticks(atLeast));
  if (m_lastStart && shown.time.ticks >= *m_lastStart) return {};
  auto found = at(time);
  if (found && found->time.ticks <= shown.time.ticks) return {};
  m_landed = found;
  return found;
}

int64_t MoviePictures::ticks(MediaTime time) const {
  const int64_t scale = m_reader.timescale();
  // Apart, so that no product is beyond 64 bits.
  const int64_t seconds = std::clamp(time.ticks / time.timescale, -kLongest, kLongest);
  const int64_t product = time.ticks % time.timescale * scale;
  const int64_t part = product / time.timescale - (product % time.timescale < 0 ? 1 : 0);
  return std::max<int64_t>(0, seconds * scale + part);
}

std::optional<TimedVideoPicture> MoviePictures::at(int64_t time) {
  if (m_lastStart) time = std::min(time, *m_lastStart);
  if (auto kept = m_cache.at(time)) return kept;
  if (auto decoded = decodedAt(time, leadOf(time))) return decoded;
  // There is nothing at or behind this time.
  return decodedAt(time, kLongest * m_reader.timescale());
}

std::optional<TimedVideoPicture> MoviePictures::decodedAt(int64_t time, int64_t lead) {
  std::optional<TimedVideoPicture> last = std::exchange(m_read, {});
  if (!last || endOf(*last) != time) {
    last.reset();
    m_reader.seek({time, m_reader.timescale()}, {lead, m_reader.timescale()});
  }
  while (auto shown = next()) {
    last = std::move(shown);
    if (endOf(*last) > time) return last;
  }
  if (last) m_lastStart = last->time.ticks;
  return last;
}

int64_t MoviePictures::leadOf(int64_t time) const {
  if (!m_landed || time >= m_landed->time.ticks) return 0;
  const double scale = m_reader.timescale();
  if (static_cast<double>(m_landed->time.ticks - time) > kStepBack * scale) return 0;
  const size_t room = m_cache.mostBytes() / kPartInFront;
  const double pictures =
      std::floor(static_cast<double>(room) / static_cast<double>(bytesOf(*m_landed->picture) + 1));
  const double fitting = pictures * static_cast<double>(m_landed->duration.ticks);
  return std::llround(std::min(kKeptInFront * scale, fitting));
}

std::optional<TimedVideoPicture> MoviePictures::next() {
  // Gone also when this throws.
  m_read.reset();
  m_read = m_reader.next();
  if (m_read) m_cache.insert(*m_read);
  return m_read;
}

}  // namespace vantrel
