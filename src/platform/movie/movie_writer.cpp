#include "platform/movie/movie_writer.h"

#include <cstdio>
#include <optional>
#include <system_error>
#include <utility>

#include "base/cancelled.h"
#include "platform/desktop/file_error.h"
#include "platform/movie/audio_input.h"
#include "platform/movie/coded_format.h"
#include "platform/movie/encoder_candidates.h"
#include "platform/movie/movie_error.h"
#include "platform/movie/quicktime_finish.h"
#include "platform/movie/video_encoder.h"
#include "platform/movie/video_input.h"

namespace vantrel {
namespace {

/// FFmpeg's own for movies that nobody gave one.
constexpr int32_t kUsualMovieTimescale = 1000;

bool makeSense(const VideoInputSettings& settings) {
  return settings.width >= 2 && settings.height >= 2 && settings.width % 2 == 0 &&
         settings.height % 2 == 0 && settings.timescale > 0 && settings.bitsPerSecond > 0 &&
         !(settings.isHdr && settings.codec != VideoCodec::Hevc);
}

/// Throws what is being handled; errors of files become errors of saving `name`.
[[noreturn]] void rethrowAsErrorOf(const std::filesystem::path& name) {
  try {
    throw;
  } catch (const std::system_error& error) {
    throw fileError(name, FileAction::Save, error.code());
  } catch (const MovieError&) {
    // Of what has just been written.
    throw MovieError(name, FileAction::Save, AVERROR_INVALIDDATA);
  }
}

}  // namespace

/// Everything behind a MovieWriter. Inputs are added before writing starts, and stay.
class MovieWriter::Session {
 public:
  Session(std::filesystem::path file, std::filesystem::path name)
      : m_file(std::move(file)), m_name(std::move(name)), m_muxer(m_file, m_name) {}
  ~Session() { m_state.cancel(); }

  void start();
  void finish();

  std::filesystem::path m_file, m_name;
  WritingState m_state;
  TrackPace m_pace;
  MovieMuxer m_muxer;
  bool m_rewrites = true;
  int32_t m_movieTimescale = kUsualMovieTimescale;
  MediaTime m_end;
  /// The encoder of the settings that were last found to apply, opened and unused.
  std::optional<std::pair<VideoInputSettings, VideoEncoder>> m_tried;
  std::vector<std::unique_ptr<AudioInput>> m_audio;
  /// Behind what its thread uses.
  std::unique_ptr<VideoInput> m_video;

 private:
  [[nodiscard]] std::vector<QuickTimeTrackChange> changes() const;
  void rewrite();
};

void MovieWriter::Session::start() {
  if (m_video) m_video->addStream(m_muxer);
  for (const auto& input : m_audio)
    input->addStream(m_muxer);
  m_muxer.writeHeader(m_video ? m_video->settings().timescale : 0, m_movieTimescale);
  if (m_video) m_video->startEncoding();
}

void MovieWriter::Session::finish() {
  for (const auto& input : m_audio)
    input->markAsFinished();
  if (m_video) {
    m_video->markAsFinished();
    m_video->waitForEnd();
  }
  throwIfCancelled(m_state.stopToken());
  if (m_video && !m_video->hasWritten()) {
    // A movie without a picture is none, and there is nothing more to say of it.
    m_state.fail(nullptr);
    return;
  }
  m_muxer.close(!m_rewrites);
  if (m_rewrites) rewrite();
  m_state.complete();
}

std::vector<QuickTimeTrackChange> MovieWriter::Session::changes() const {
  std::vector<QuickTimeTrackChange> changes;
  const auto add = [&changes](std::optional<QuickTimeTrackChange> change) {
    if (change) changes.push_back(*std::move(change));
  };
  if (m_video) add(m_video->change(m_end, m_movieTimescale));
  for (const auto& input : m_audio)
    add(input->change(m_movieTimescale));
  return changes;
}

/// Rewrites the file beside itself, and puts the new one in its place.
void MovieWriter::Session::rewrite() {
  std::filesystem::path rewritten = m_file;
  rewritten += ".rewritten";
  try {
    finishQuickTimeMovie(m_file, rewritten, {static_cast<uint32_t>(m_movieTimescale), changes()},
                         m_state.stopToken());
    if (std::rename(rewritten.c_str(), m_file.c_str()) != 0) {
      throw fileError(m_name, FileAction::Save);
    }
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove(rewritten, ignored);
    rethrowAsErrorOf(m_name);
  }
}

MovieWriter::MovieWriter(std::filesystem::path file, std::filesystem::path name)
    : m_session(std::make_unique<Session>(std::move(file), std::move(name))) {}
MovieWriter::~MovieWriter() = default;

void MovieWriter::setShouldOptimizeForNetworkUse(bool optimize) {
  m_session->m_rewrites = optimize;
}

void MovieWriter::setMovieTimescale(int32_t timescale) {
  if (timescale > 0) m_session->m_movieTimescale = timescale;
}

bool MovieWriter::canApply(const VideoInputSettings& settings) const {
  if (!makeSense(settings)) return false;
  try {
    m_session->m_tried.emplace(
        settings, VideoEncoder::open(m_session->m_name, settings, encoderCandidates(settings)));
    return true;
  } catch (const MovieError&) {
    return false;
  }
}

bool MovieWriter::canAdd(const VideoInputSettings& settings) const {
  return !m_session->m_video && status() == Status::unknown && makeSense(settings);
}

bool MovieWriter::canAdd(const AudioInputSettings& settings) const {
  const MovieTrack& source = settings.source;
  return status() == Status::unknown && source.kind == MovieTrack::Kind::Audio && source.format &&
         source.fitsQuickTime && MovieMuxer::takes(*source.format->parameters);
}

SampleInput& MovieWriter::addVideoInput(const VideoInputSettings& settings) {
  if (!canAdd(settings)) throw MovieError(m_session->m_name, FileAction::Save, AVERROR(EINVAL));
  m_session->m_video = std::make_unique<VideoInput>(m_session->m_name, settings, m_session->m_state,
                                                    m_session->m_pace);
  auto& tried = m_session->m_tried;
  if (tried && tried->first == settings) m_session->m_video->useEncoder(std::move(tried->second));
  tried.reset();
  return *m_session->m_video;
}

SampleInput& MovieWriter::addAudioInput(const AudioInputSettings& settings) {
  if (!canAdd(settings)) throw MovieError(m_session->m_name, FileAction::Save, AVERROR(EINVAL));
  m_session->m_audio.push_back(
      std::make_unique<AudioInput>(settings, m_session->m_state, m_session->m_pace));
  return *m_session->m_audio.back();
}

bool MovieWriter::startWriting() {
  WritingState& state = m_session->m_state;
  if (!state.begin()) return false;
  try {
    m_session->start();
  } catch (...) {
    state.fail(std::current_exception());
  }
  return state.isWriting();
}

void MovieWriter::startSession(MediaTime time) {
  if (m_session->m_video) m_session->m_video->setStart(time);
  for (const auto& input : m_session->m_audio)
    input->setStart(time);
}

void MovieWriter::endSession(MediaTime time) {
  m_session->m_end = time;
}

void MovieWriter::finishWriting() {
  WritingState& state = m_session->m_state;
  if (!state.isWriting()) return;
  try {
    m_session->finish();
  } catch (const Cancelled&) {
    // The status tells already.
  } catch (...) {
    state.fail(std::current_exception());
  }
}

void MovieWriter::cancelWriting() {
  m_session->m_state.cancel();
}

WritingSession::Status MovieWriter::status() const {
  return m_session->m_state.status();
}

std::exception_ptr MovieWriter::error() const {
  return m_session->m_state.error();
}

std::string MovieWriter::encoderName() const {
  return m_session->m_video ? m_session->m_video->encoderName() : std::string();
}

}  // namespace vantrel
