#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/movie/coded_format.h"
#include "platform/movie/movie_writer.h"
#include "platform/movie/sample_content.h"
#include "support/movie_maker.h"

namespace vantrel::testing {

/// A picture whose samples depend on position and time; YUV420P, or YUV420P10 for ten bits.
inline AvFramePtr makePicture(int width, int height, int64_t pts, bool tenBit = false) {
  AvFramePtr frame = makeFrame();
  frame->format = tenBit ? AV_PIX_FMT_YUV420P10 : AV_PIX_FMT_YUV420P;
  frame->width = width;
  frame->height = height;
  frame->pts = pts;
  if (av_frame_get_buffer(frame.get(), 0) < 0) throw std::bad_alloc();
  for (int plane = 0; plane < 3; ++plane) {
    const int shift = plane == 0 ? 0 : 1;
    for (int y = 0; y < height >> shift; ++y) {
      uint8_t* row = frame->data[plane] + ptrdiff_t{y} * frame->linesize[plane];
      for (int x = 0; x < width >> shift; ++x) {
        const auto value = static_cast<uint8_t>(16 + (x * 3 + y * 5 + pts / 8 + plane * 40) % 200);
        if (tenBit) {
          reinterpret_cast<uint16_t*>(row)[x] = static_cast<uint16_t>(value * 4);
        } else {
          row[x] = value;
        }
      }
    }
  }
  return frame;
}

inline MovieSample videoSample(AvFramePtr frame, int32_t timescale, int64_t duration = 0) {
  const int64_t pts = frame->pts;
  auto content = std::make_unique<MovieSample::Content>();
  content->frame = std::move(frame);
  content->timeBase = {1, timescale};
  return {{pts, timescale}, {duration, duration > 0 ? timescale : 0}, std::move(content)};
}

/// 64 x 48 pixels of ordinary colours at 600 ticks per second.
inline VideoInputSettings smallSettings(VideoCodec codec) {
  VideoInputSettings settings;
  settings.codec = codec;
  settings.width = 64;
  settings.height = 48;
  settings.bitsPerSecond = 400'000;
  settings.color = {1, 1, 1};
  settings.timescale = 600;
  settings.expectedFrameRate = 30;
  return settings;
}

/// One stream of sound with its packets.
struct Sound {
  MovieTrack track;
  std::vector<AvPacketPtr> packets;
  AVRational timeBase{0, 1};

  [[nodiscard]] MovieSample sample(size_t index) const {
    auto content = std::make_unique<MovieSample::Content>();
    content->packet = owned<AvPacketPtr>(av_packet_clone(packets.at(index).get()));
    content->timeBase = timeBase;
    const int64_t ticks =
        av_rescale(content->packet->pts, int64_t{timeBase.num} * 1'000'000, timeBase.den);
    return {{ticks, 1'000'000}, {}, std::move(content)};
  }
};

/// A stream of sound in a file that has no other kind, with nothing trimmed.
inline Sound readSound(const std::filesystem::path& file, int index = 0) {
  AVFormatContext* opened = nullptr;
  AVDictionary* options = nullptr;
  av_dict_set(&options, "ignore_editlist", "1", 0);
  const int result = avformat_open_input(&opened, file.c_str(), nullptr, &options);
  av_dict_free(&options);
  if (result < 0 || avformat_find_stream_info(opened, nullptr) < 0) {
    throw std::runtime_error("cannot read " + file.string());
  }
  const AvInputPtr input(opened);
  Sound sound;
  const AVStream& stream = *opened->streams[index];
  sound.timeBase = stream.time_base;
  auto format = std::make_shared<CodedFormat>();
  format->parameters = owned<AvCodecParametersPtr>(avcodec_parameters_alloc());
  avcodec_parameters_copy(format->parameters.get(), stream.codecpar);
  format->timeBase = stream.time_base;
  sound.track.kind = MovieTrack::Kind::Audio;
  sound.track.format = std::move(format);
  sound.track.timescale = stream.time_base.den;
  for (AvPacketPtr packet = makePacket(); av_read_frame(opened, packet.get()) >= 0;
       packet = makePacket()) {
    if (packet->stream_index == index) sound.packets.push_back(std::move(packet));
  }
  return sound;
}

/// What ffprobe tells of a file, for "-show_streams" and the like.
inline QJsonObject probe(const std::filesystem::path& file, std::vector<std::string> arguments) {
  arguments.insert(arguments.end(), {"-of", "json", file.string()});
  return QJsonDocument::fromJson(QByteArray::fromStdString(runFfprobe(arguments))).object();
}

inline QJsonObject probeStream(const std::filesystem::path& file, int index) {
  return probe(file, {"-show_streams"})[QStringLiteral("streams")].toArray().at(index).toObject();
}

inline std::string text(const QJsonObject& object, const char* key) {
  return object[QLatin1String(key)].toVariant().toString().toStdString();
}

/// The presentation times of the decoded frames of a stream, in its ticks.
inline std::vector<int64_t> frameTimes(const std::filesystem::path& file,
                                       const std::string& stream) {
  const QJsonObject found = probe(file, {"-select_streams", stream, "-show_entries", "frame=pts"});
  std::vector<int64_t> times;
  for (const QJsonValue& frame : found[QStringLiteral("frames")].toArray()) {
    times.push_back(frame.toObject()[QStringLiteral("pts")].toInteger());
  }
  return times;
}

/// The presentation times of the packets that are key frames, in ticks of the stream.
inline std::vector<int64_t> keyFrameTimes(const std::filesystem::path& file) {
  const QJsonObject found =
      probe(file, {"-select_streams", "v:0", "-show_entries", "packet=pts,flags"});
  std::vector<int64_t> times;
  for (const QJsonValue& packet : found[QStringLiteral("packets")].toArray()) {
    if (text(packet.toObject(), "flags").front() != 'K') continue;
    times.push_back(packet.toObject()[QStringLiteral("pts")].toInteger());
  }
  std::sort(times.begin(), times.end());
  return times;
}

/// Of each stream of sound the checksums of its packets.
inline std::vector<std::string> packetBytes(const std::filesystem::path& file) {
  const QJsonObject found = probe(file, {"-select_streams", "a", "-show_data_hash", "MD5",
                                         "-show_entries", "packet=stream_index,data_hash"});
  std::map<int, std::string> hashes;
  for (const QJsonValue& packet : found[QStringLiteral("packets")].toArray()) {
    const int stream = packet.toObject()[QStringLiteral("stream_index")].toInt();
    hashes[stream] += text(packet.toObject(), "data_hash") + "\n";
  }
  std::vector<std::string> all;
  for (const auto& [stream, hash] : hashes)
    all.push_back(hash);
  return all;
}

/// Of each stream of sound the presentation times and lengths of its decoded frames.
inline std::vector<std::string> soundTimes(const std::filesystem::path& file) {
  const QJsonObject found =
      probe(file, {"-select_streams", "a", "-show_entries", "frame=stream_index,pts,nb_samples"});
  std::map<int, std::string> times;
  for (const QJsonValue& frame : found[QStringLiteral("frames")].toArray()) {
    const int stream = frame.toObject()[QStringLiteral("stream_index")].toInt();
    times[stream] +=
        text(frame.toObject(), "pts") + "+" + text(frame.toObject(), "nb_samples") + " ";
  }
  std::vector<std::string> all;
  for (const auto& [stream, time] : times)
    all.push_back(time);
  return all;
}

/// Appends a picture for each of the times.
inline void appendPictures(SampleInput& input, const VideoInputSettings& settings,
                           const std::vector<int64_t>& times, int64_t lastDuration = 0) {
  for (const int64_t time : times) {
    const int64_t duration = time == times.back() ? lastDuration : 0;
    AvFramePtr picture = makePicture(settings.width, settings.height, time, settings.isHdr);
    if (!input.append(videoSample(std::move(picture), settings.timescale, duration))) break;
  }
  input.markAsFinished();
}

/// Times that start at 0 and lie `step` apart.
inline std::vector<int64_t> evenTimes(size_t count, int64_t step) {
  std::vector<int64_t> times(count);
  for (size_t index = 0; index < count; ++index)
    times[index] = static_cast<int64_t>(index) * step;
  return times;
}

}  // namespace vantrel::testing
