// print_encoder_options h264|hevc WIDTH HEIGHT FRAME_RATE MBPS: how crop-once opens its software
// encoder for such a film on this machine, as JSON, for run.py to give to the ffmpeg command.

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

#include "platform/movie/encoder_options.h"

int main(int argc, char** argv) {
  if (argc != 6) {
    std::fputs("usage: print_encoder_options h264|hevc WIDTH HEIGHT FRAME_RATE MBPS\n", stderr);
    return 64;
  }
  vantrel::VideoInputSettings settings;
  settings.codec =
      std::string_view(argv[1]) == "h264" ? vantrel::VideoCodec::H264 : vantrel::VideoCodec::Hevc;
  settings.width = std::atoi(argv[2]);
  settings.height = std::atoi(argv[3]);
  settings.expectedFrameRate = std::atof(argv[4]);
  settings.bitsPerSecond = std::llround(std::atof(argv[5]) * 1'000'000);
  const auto cores = static_cast<int>(std::thread::hardware_concurrency());
  const vantrel::EncoderOptions setup = vantrel::softwareEncoderOptions(settings, cores);
  QJsonArray options;
  for (const auto& [name, value] : setup.options) {
    options.append(QJsonArray{QString::fromStdString(name), QString::fromStdString(value)});
  }
  const QJsonObject report{{QStringLiteral("encoder"), QString::fromStdString(setup.encoder)},
                           {QStringLiteral("options"), options},
                           {QStringLiteral("averageRate"), static_cast<qint64>(setup.averageRate)},
                           {QStringLiteral("maxRate"), static_cast<qint64>(setup.maxRate)},
                           {QStringLiteral("bufferSize"), setup.bufferSize}};
  std::fputs(QJsonDocument(report).toJson(QJsonDocument::Compact).constData(), stdout);
  return 0;
}
