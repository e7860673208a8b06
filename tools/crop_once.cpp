// Crops one file without a window. What it takes stands in CropOnceOptions::usage; what it makes
// appears under its name only when it is whole.

#include <QJsonDocument>
#include <QJsonObject>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <span>
#include <stop_token>
#include <system_error>

#include "base/cancelled.h"
#include "base/failure.h"
#include "export/crop_export_state.h"
#include "export/image_exporter.h"
#include "media/image_source.h"
#include "platform/desktop/atomic_file.h"
#include "platform/desktop/content_type.h"
#include "tools/crop_once_options.h"
#include "tools/crop_video_once.h"
#include "tools/stop_on_signals.h"

namespace vantrel {
namespace {

enum ExitCode { kDone = 0, kFailed = 1, kCancelled = 2, kWrongUsage = 64 };

/// A JPEG stays a JPEG, everything else becomes a PNG, unless another format was asked for.
ImageEncodingSettings settingsOf(const CropOnceOptions& options, const ContentType& type) {
  using Format = ImageEncodingSettings::Format;
  const Format usual = type == ContentType::jpeg() ? Format::jpeg : Format::png;
  ImageEncodingSettings settings;
  settings.format = options.format.value_or(usual);
  settings.quality = options.quality.value_or(settings.quality);
  settings.background = options.background.value_or(settings.background);
  return settings;
}

QJsonObject cropImage(const CropOnceOptions& options, const std::stop_token& stop) {
  const ImageSource source = ImageSource::load(options.source, stop);
  const QSizeF size(static_cast<double>(source.image.width()),
                    static_cast<double>(source.image.height()));
  const std::optional<QRectF> crop = options.crop(size, 1);
  if (!crop) throw ImageError(ImageError::invalidCrop);
  AtomicFile file(options.destination);
  ImageExporter::write(source, file.temporaryPath(), *crop, settingsOf(options, source.type), stop);
  const auto bytes = static_cast<qint64>(std::filesystem::file_size(file.temporaryPath()));
  file.commit();
  return {{QStringLiteral("kind"), QStringLiteral("image")},
          {QStringLiteral("width"), static_cast<qint64>(crop->width())},
          {QStringLiteral("height"), static_cast<qint64>(crop->height())},
          {QStringLiteral("bytes"), bytes}};
}

/// Crops whatever the source is; returns what is to be reported.
QJsonObject cropFile(const CropOnceOptions& options, const std::stop_token& stop) {
  const auto start = std::chrono::steady_clock::now();
  const bool isImage = ContentType::ofFile(options.source).isImage();
  QJsonObject report = isImage ? cropImage(options, stop) : cropVideoOnce(options, stop);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  report.insert(QStringLiteral("seconds"), elapsed.count());
  return report;
}

ExitCode run(const CropOnceOptions& options) {
  const StopOnSignals signals;
  try {
    const QByteArray report =
        QJsonDocument(cropFile(options, signals.token())).toJson(QJsonDocument::Compact);
    if (std::puts(report.constData()) >= 0 && std::fflush(stdout) == 0) return kDone;
    throw std::system_error(errno, std::generic_category(), "The report could not be printed");
  } catch (...) {
    if (signals.token().stop_requested()) {
      const QString line = CropExportState::text(CropExportState::Message::cancelled);
      std::fprintf(stderr, "%s\n", qUtf8Printable(line));
      return kCancelled;
    }
    std::fprintf(stderr, "%s\n", userMessage(std::current_exception()).c_str());
    return kFailed;
  }
}

}  // namespace
}  // namespace vantrel

int main(int argc, char** argv) {
  // A full disk and a reader that has gone are errors to report, not ends of the process.
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  try {
    const std::span<const char* const> arguments(argv, static_cast<size_t>(argc));
    return vantrel::run(
        vantrel::CropOnceOptions::parse(arguments.subspan(arguments.empty() ? 0 : 1)));
  } catch (const vantrel::WrongUsage& error) {
    std::fprintf(stderr, "crop-once: %s\n%s", error.what(), vantrel::CropOnceOptions::usage());
    return vantrel::kWrongUsage;
  } catch (...) {
    std::fprintf(stderr, "%s\n", vantrel::userMessage(std::current_exception()).c_str());
    return vantrel::kFailed;
  }
}
