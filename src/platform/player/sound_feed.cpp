#include "platform/player/sound_feed.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <utility>

namespace vantrel {
namespace {

using namespace std::chrono_literals;

/// What the ring holds, in samples of a channel: half a second.
constexpr int64_t kCapacity = 24'000;
/// What is decoded before the device is started: a tenth of a second.
constexpr int64_t kRunUp = 4'800;
/// How often the decoder looks for room.
constexpr auto kPause = 20ms;

double monotonicSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

SoundFeed::SoundFeed(const Movie& movie, std::optional<MovieTrack> track, Open open)
    : m_movie(movie), m_track(std::move(track)), m_open(std::move(open)), m_ring(kCapacity) {}

SoundFeed::~SoundFeed() = default;

void SoundFeed::start(double time) {
  m_startTime = m_lastTime = time;
  m_startedAt = monotonicSeconds();
  m_isSilent = !m_track;
  if (m_isSilent) return;
  wish(time);
  if (!m_thread.joinable()) {
    m_thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
  }
}

void SoundFeed::stop() {
  if (m_thread.joinable()) wish({});
}

void SoundFeed::wish(std::optional<double> start) {
  {
    const std::lock_guard lock(m_mutex);
    m_wish = {start, m_wish.number + 1};
  }
  m_wished.notify_one();
}

SoundFeed::State SoundFeed::state() {
  if (m_isSilent) return State::Silent;
  const double now = monotonicSeconds();
  int64_t newest = 0;
  {
    const std::lock_guard lock(m_mutex);
    newest = m_wish.number;
  }
  const bool isOurs = m_obeyed == newest;
  const auto taken = isOurs ? m_ring.lastTaken() : std::nullopt;
  if (!m_hasFailed && now - taken.value_or(m_startedAt) <= kPatience) {
    return taken ? State::Heard : State::Starting;
  }
  // What comes now would come too late.
  m_isSilent = true;
  stop();
  return State::Silent;
}

std::optional<double> SoundFeed::time() {
  if (state() != State::Heard) return {};
  const int rate = m_rate;
  const auto heard = m_ring.heard(monotonicSeconds(), rate);
  if (heard) m_lastTime = std::max({m_startTime, m_lastTime, *heard / rate});
  return m_lastTime;
}

void SoundFeed::run(const std::stop_token& stop) {
  try {
    openAll(stop);
    int64_t obeyed = 0;
    while (!stop.stop_requested() && !m_hasFailed) {
      Wish wish;
      {
        std::unique_lock lock(m_mutex);
        const auto isNew = [&] { return m_wish.number != obeyed; };
        if (m_isStarted && !m_isDone) {
          m_wished.wait_for(lock, stop, kPause, isNew);
        } else {
          m_wished.wait(lock, stop, isNew);
        }
        wish = m_wish;
      }
      if (stop.stop_requested()) break;
      if (std::exchange(obeyed, wish.number) != wish.number) {
        obey(wish, stop);
      } else if (m_isStarted) {
        fill(wish.number, kCapacity);
      }
    }
  } catch (const std::exception&) {
    // Without sound the picture goes on.
    m_hasFailed = true;
  }
  m_output.reset();
}

void SoundFeed::openAll(const std::stop_token& stop) {
  m_output = m_open([this](float* samples, int frames) { give(samples, frames); });
  if (!m_output) {
    m_hasFailed = true;
    return;
  }
  m_rate = m_output->sampleRate();
  m_reader = std::make_unique<SoundReader>(m_movie, *m_track, m_rate, stop);
}

void SoundFeed::obey(const Wish& wish, const std::stop_token& stop) {
  if (std::exchange(m_isStarted, false)) m_output->stop();
  if (!wish.start) return;
  const int64_t start = std::llround(*wish.start * m_rate);
  m_ring.restart(start);
  m_block = {};
  m_isDone = false;
  m_sought = MediaTime{start, m_rate};
  fill(wish.number, kRunUp);
  if (stop.stop_requested() || !isNewest(wish.number)) return;
  m_obeyed = wish.number;
  m_isStarted = true;
  m_output->start();
}

bool SoundFeed::isNewest(int64_t wishNumber) const {
  const std::lock_guard lock(m_mutex);
  return m_wish.number == wishNumber;
}

void SoundFeed::fill(int64_t wishNumber, int64_t wanted) {
  while (!m_isDone && kCapacity - m_ring.room() < wanted && m_ring.room() > 0) {
    if (!isNewest(wishNumber)) return;
    if (m_block.length() == 0) {
      auto block = nextBlock();
      if (!block) {
        m_isDone = true;
        m_ring.finish();
        return;
      }
      m_block = std::move(*block);
    }
    putBlock();
  }
}

std::optional<SoundBlock> SoundFeed::nextBlock() {
  try {
    if (const auto sought = std::exchange(m_sought, {})) m_reader->seek(*sought);
    return m_reader->next();
  } catch (const std::exception&) {
    return {};
  }
}

void SoundFeed::putBlock() {
  const int64_t room = m_ring.room();
  const int64_t gap = m_block.start - m_ring.end();
  if (gap > 0) {
    m_ring.put(nullptr, std::min(gap, room));
    return;
  }
  const int64_t length = std::min(m_block.length(), room);
  m_ring.put(m_block.samples.data(), length);
  m_block.samples.erase(m_block.samples.begin(), m_block.samples.begin() + 2 * length);
  m_block.start += length;
}

void SoundFeed::give(float* samples, int frames) {
  m_ring.take(samples, frames, monotonicSeconds());
  if (m_isMuted) std::fill_n(samples, 2 * static_cast<ptrdiff_t>(frames), 0.0F);
}

}  // namespace vantrel
