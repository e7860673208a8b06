#include "platform/movie/movie_reader.h"

#include <cmath>
#include <utility>
#include <vector>

#include "platform/movie/audio_output.h"
#include "platform/movie/coded_format.h"
#include "platform/movie/video_output.h"

namespace vantrel {
namespace {

/// A quarter turn or a mirror of one, and a shift by whole pixels.
bool keepsPixels(const AffineTransform& transform) {
  const auto isUnit = [](double value) { return std::abs(value) == 1; };
  const bool isUpright =
      isUnit(transform.a) && isUnit(transform.d) && transform.b == 0 && transform.c == 0;
  const bool isTurned =
      isUnit(transform.b) && isUnit(transform.c) && transform.a == 0 && transform.d == 0;
  return (isUpright || isTurned) && std::trunc(transform.tx) == transform.tx &&
         std::trunc(transform.ty) == transform.ty;
}

bool isPictureSide(int side) {
  return side >= 2 && side % 2 == 0;
}

}  // namespace

class MovieReader::Session final {
 public:
  explicit Session(Movie movie) : m_movie(std::move(movie)) {}
  ~Session() { m_state.cancel(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  [[nodiscard]] ReadingState& state() { return m_state; }

  SampleOutput& addVideo(const MovieTrack& track, const VideoOutputSettings& settings) {
    return *m_video.emplace_back(std::make_unique<VideoOutput>(m_state, m_movie, track, settings));
  }
  SampleOutput& addAudio(const MovieTrack& track) {
    return *m_audio.emplace_back(std::make_unique<AudioOutput>(m_state, m_movie, track));
  }

  [[nodiscard]] bool start() { return m_state.begin(m_video.size() + m_audio.size()); }

 private:
  Movie m_movie;
  // Outlives the outputs.
  ReadingState m_state;
  std::vector<std::unique_ptr<VideoOutput>> m_video;
  std::vector<std::unique_ptr<AudioOutput>> m_audio;
};

MovieReader::MovieReader(const Movie& movie) : m_session(std::make_unique<Session>(movie)) {}
MovieReader::~MovieReader() = default;

bool MovieReader::canAdd(const MovieTrack& track, const VideoOutputSettings& settings) const {
  if (track.kind != MovieTrack::Kind::Video || !track.format) return false;
  const AVCodecParameters& parameters = *track.format->parameters;
  const auto format = static_cast<AVPixelFormat>(parameters.format);
  return avcodec_find_decoder(parameters.codec_id) &&
         (format == AV_PIX_FMT_NONE || FrameCropper::accepts(format)) &&
         keepsPixels(settings.transform) && isPictureSide(settings.width) &&
         isPictureSide(settings.height);
}

bool MovieReader::canAdd(const MovieTrack& track) const {
  return track.kind == MovieTrack::Kind::Audio && track.format;
}

SampleOutput& MovieReader::addVideoOutput(const MovieTrack& track,
                                          const VideoOutputSettings& settings) {
  return m_session->addVideo(track, settings);
}

SampleOutput& MovieReader::addAudioOutput(const MovieTrack& track) {
  return m_session->addAudio(track);
}

bool MovieReader::startReading() {
  return m_session->start();
}

void MovieReader::cancelReading() {
  m_session->state().cancel();
}

MovieReader::Status MovieReader::status() const {
  return m_session->state().status();
}

std::exception_ptr MovieReader::error() const {
  return m_session->state().error();
}

}  // namespace vantrel
