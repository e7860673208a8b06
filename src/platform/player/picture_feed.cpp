#include "platform/player/picture_feed.h"

#include <exception>
#include <memory>
#include <utility>

#include "platform/player/movie_pictures.h"
#include "platform/player/picture_times.h"

namespace vantrel {
namespace {

/// How many pictures are decoded ahead, and how many bytes all but one of them take at most.
constexpr size_t kMostAhead = 4;
constexpr size_t kMostAheadBytes = size_t{64} << 20;
/// A picture whose time has passed by so many seconds is not decoded any more.
constexpr double kTooLate = 0.05;

}  // namespace

PictureFeed::PictureFeed(const Movie& movie, std::optional<MovieTrack> track,
                         std::function<void(Landing)> landed)
    : m_movie(movie),
      m_track(std::move(track)),
      m_landed(std::move(landed)),
      m_thread([this](const std::stop_token& stop) { run(stop); }) {}

PictureFeed::~PictureFeed() = default;

std::optional<int64_t> PictureFeed::seek(int64_t number, MediaTime to) {
  std::optional<int64_t> replaced;
  {
    const std::lock_guard lock(m_mutex);
    if (m_seek) replaced = m_seek->number;
    m_seek = {number, to};
    m_newest = number;
    m_ahead.clear();
    m_end.reset();
    m_now = to.seconds();
  }
  m_wished.notify_one();
  return replaced;
}

void PictureFeed::setAhead(bool ahead) {
  {
    const std::lock_guard lock(m_mutex);
    m_isAhead = ahead;
  }
  m_wished.notify_one();
}

bool PictureFeed::isReady() const {
  const std::lock_guard lock(m_mutex);
  return m_newestLanded == m_newest && (!m_ahead.empty() || m_end);
}

std::optional<TimedVideoPicture> PictureFeed::take(double time) {
  std::optional<TimedVideoPicture> taken;
  {
    const std::lock_guard lock(m_mutex);
    m_now = time;
    while (!m_ahead.empty() && m_ahead.front().time.seconds() <= time) {
      taken = std::move(m_ahead.front());
      m_ahead.pop_front();
    }
  }
  if (taken) m_wished.notify_one();
  return taken;
}

std::optional<PictureFeed::End> PictureFeed::end() const {
  const std::lock_guard lock(m_mutex);
  return m_end;
}

void PictureFeed::run(const std::stop_token& stop) {
  std::unique_ptr<MoviePictures> pictures;
  try {
    if (m_track) pictures = std::make_unique<MoviePictures>(m_movie, *m_track, stop);
  } catch (const std::exception&) {
    // Each seek then fails.
  }
  while (!stop.stop_requested()) {
    std::optional<Seek> seek;
    {
      std::unique_lock lock(m_mutex);
      m_wished.wait(lock, stop, [this] { return m_seek || hasRoom(); });
      seek = std::exchange(m_seek, {});
    }
    if (stop.stop_requested()) return;
    if (seek) {
      land(pictures.get(), *seek);
    } else {
      decodeAhead(pictures.get());
    }
  }
}

void PictureFeed::land(MoviePictures* pictures, const Seek& seek) {
  Landing landing{seek.number, {}, !pictures && m_track};
  try {
    if (pictures) landing.picture = pictures->at(seek.to);
  } catch (const std::exception&) {
    landing.hasFailed = true;
  }
  m_last = landing.picture;
  {
    const std::lock_guard lock(m_mutex);
    m_newestLanded = seek.number;
    if (!landing.picture && m_newest == seek.number) {
      m_end = End{seek.to.seconds(), landing.hasFailed};
    }
    m_landings.push_back(std::move(landing));
  }
  QMetaObject::invokeMethod(
      &m_receiver, [this] { deliver(); }, Qt::QueuedConnection);
}

bool PictureFeed::hasRoom() const {
  if (!m_isAhead || m_newestLanded != m_newest || m_newest == 0 || m_end) return false;
  if (m_ahead.empty()) return true;
  return m_ahead.size() < kMostAhead &&
         m_ahead.size() * bytesOf(*m_ahead.back().picture) < kMostAheadBytes;
}

void PictureFeed::decodeAhead(MoviePictures* pictures) {
  double now = 0;
  {
    const std::lock_guard lock(m_mutex);
    now = m_now;
  }
  const bool isLate = endSeconds(*m_last) < now - kTooLate;
  std::optional<TimedVideoPicture> next;
  bool hasFailed = false;
  try {
    next = pictures->behind(*m_last, mediaTime(isLate ? now : 0));
  } catch (const std::exception&) {
    hasFailed = true;
  }
  const std::lock_guard lock(m_mutex);
  // A newer seek has come.
  if (m_newestLanded != m_newest) return;
  if (next) {
    m_last = next;
    m_ahead.push_back(std::move(*next));
  } else {
    m_end = End{endSeconds(*m_last), hasFailed};
  }
}

void PictureFeed::deliver() {
  Landing landing;
  {
    const std::lock_guard lock(m_mutex);
    landing = std::move(m_landings.front());
    m_landings.pop_front();
  }
  m_landed(std::move(landing));
}

}  // namespace vantrel
