#include "platform/movie/video_picture_reader.h"

#include <utility>

#include "platform/movie/picture_decoder.h"
#include "platform/movie/video_picture_of.h"

namespace vantrel {

class VideoPictureReader::Decoder {
 public:
  Decoder(const Movie& movie, MovieTrack shown, const std::stop_token& stop)
      : track(std::move(shown)), pictures(movie, track, stop) {}

  const MovieTrack track;
  PictureDecoder pictures;
};

VideoPictureReader::VideoPictureReader(const Movie& movie, const MovieTrack& track,
                                       const std::stop_token& stop)
    : m_decoder(std::make_unique<Decoder>(movie, track, stop)) {}

VideoPictureReader::~VideoPictureReader() = default;

std::optional<TimedVideoPicture> VideoPictureReader::next() {
  auto decoded = m_decoder->pictures.next();
  if (!decoded) return {};
  return TimedVideoPicture{videoPictureOf(std::move(decoded->frame), m_decoder->track),
                           decoded->time, decoded->duration};
}

void VideoPictureReader::seek(MediaTime time, MediaTime lead) {
  m_decoder->pictures.seek(time, lead);
}

int32_t VideoPictureReader::timescale() const {
  return m_decoder->pictures.timescale();
}

}  // namespace vantrel
