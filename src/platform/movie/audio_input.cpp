#include "platform/movie/audio_input.h"

#include <QtGlobal>

extern "C" {
#include <libavutil/mathematics.h>
}

#include <utility>

#include "base/failure.h"
#include "platform/movie/coded_format.h"
#include "platform/movie/movie_error.h"
#include "platform/movie/sample_content.h"
#include "platform/movie/shown_span.h"

namespace vantrel {
namespace {

/// Three letters of five bits each (QuickTime File Format, "ISO language codes"); absent for
/// anything but three small letters.
std::optional<uint16_t> packedLanguage(const std::string& code) {
  if (code.size() != 3) return std::nullopt;
  unsigned packed = 0;
  for (const char letter : code) {
    if (letter < 'a' || letter > 'z') return std::nullopt;
    packed = packed << 5 | static_cast<unsigned>(letter - '`');
  }
  return static_cast<uint16_t>(packed);
}

}  // namespace

AudioInput::AudioInput(AudioInputSettings settings, WritingState& state, TrackPace& pace)
    : m_settings(std::move(settings)), m_state(state), m_pace(pace), m_track(pace.add()) {}

void AudioInput::addStream(MovieMuxer& muxer) {
  m_muxer = &muxer;
  m_stream = &muxer.addStream(*m_settings.source.format->parameters);
}

bool AudioInput::isReadyForMoreMediaData() const {
  return m_pace.waitToAdvance(m_track, m_state.stopToken());
}

bool AudioInput::append(MovieSample sample) {
  const MovieSample::Content* content = sample.content();
  if (!m_state.isWriting() || !content || !content->packet) return false;
  try {
    write(*content->packet, content->timeBase);
  } catch (...) {
    m_state.fail(std::current_exception());
    return false;
  }
  m_pace.reached(m_track, sample.presentationTime().seconds());
  return true;
}

void AudioInput::write(AVPacket& packet, AVRational timeBase) {
  // The stream's time base is known since the header.
  if (!m_clock) m_clock.emplace(*m_settings.source.format->parameters, m_stream->time_base);
  m_clock->convert(packet, timeBase);
  try {
    m_muxer->write(packet, m_stream->index);
  } catch (const MovieError& error) {
    // The muxer looks into packets of some codecs.
    if (error.code() != AVERROR_INVALIDDATA) throw;
    throw Failure(QT_TRANSLATE_NOOP(
        "Failure", "The original audio is damaged and cannot be copied into a MOV file."));
  }
}

void AudioInput::markAsFinished() {
  m_pace.finish(m_track);
}

std::optional<QuickTimeTrackChange> AudioInput::change(int32_t movieTimescale) const {
  if (!m_clock || !m_clock->start()) return std::nullopt;
  QuickTimeTrackChange change;
  change.trackID = static_cast<uint32_t>(m_stream->id);
  change.enabled = m_settings.marksOutputTrackAsEnabled;
  change.language = language();
  change.extendedLanguageTag = m_settings.extendedLanguageTag;
  change.userData = m_settings.userData;
  change.metadata = m_settings.metadata;
  change.edits = edits(movieTimescale);
  return change;
}

/// The source's own where it has them, since packets come with nothing trimmed.
std::vector<QuickTimeEdit> AudioInput::edits(int32_t movieTimescale) const {
  const int32_t timescale = m_stream->time_base.den;
  const std::optional<QuickTimeTrack>& source = m_settings.source.quickTime;
  if (!source || source->edits.empty() || source->timescale == 0) {
    const int64_t start = m_sessionStart.isValid() ? av_rescale(m_sessionStart.ticks, timescale,
                                                                m_sessionStart.timescale)
                                                   : 0;
    const int64_t first = *m_clock->start();
    return editsShowing(first - start, m_clock->end() - start, first - start, timescale,
                        movieTimescale);
  }
  return convertedEdits(source->edits, source->timescale, *m_clock->start(), m_clock->end(),
                        timescale, movieTimescale);
}

std::optional<uint16_t> AudioInput::language() const {
  const MovieTrack& source = m_settings.source;
  if (source.quickTime && source.languageCode == m_settings.languageCode) {
    return source.quickTime->language;
  }
  return packedLanguage(m_settings.languageCode);
}

}  // namespace vantrel
