#include "editor/media_loader.h"

#include <QMimeData>
#include <QMimeDatabase>
#include <QUrl>
#include <algorithm>
#include <system_error>
#include <utility>

#include "base/cancelled.h"
#include "controls/text_editing.h"
#include "editor/portal_transfer.h"
#include "export/video_geometry.h"
#include "platform/desktop/bundled_file.h"
#include "platform/desktop/file_error.h"
#include "platform/desktop/local_file.h"
#include "platform/desktop/user_text.h"

namespace vantrel {
namespace {

constexpr int64_t kImagePixelStep = 1, kVideoPixelStep = 2;
constexpr double kBitsPerMegabit = 1'000'000;

SourceFile readImage(const std::filesystem::path& path, const std::stop_token& stop) {
  SourceFile file;
  file.path = path;
  file.imageSource = ImageSource::load(path, stop);
  const ImageSource& source = *file.imageSource;
  file.sourceSize = {static_cast<double>(source.image.width()),
                     static_cast<double>(source.image.height())};
  file.sourceBytes = source.bytes;
  return file;
}

int64_t sizeInBytes(const std::filesystem::path& path) {
  std::error_code error;
  const std::uintmax_t bytes = std::filesystem::file_size(path, error);
  if (error) throw fileError(path, FileAction::Read, error);
  return static_cast<int64_t>(bytes);
}

SourceFile readVideo(const std::filesystem::path& path, const std::stop_token& stop) {
  SourceFile file;
  file.path = path;
  file.movie = Movie::open(path, stop);
  const VideoGeometry geometry = VideoExporter::geometry(*file.movie);
  file.sourceSize = geometry.bounds.size();
  file.duration = file.movie->duration().seconds();
  file.sourceFPS = geometry.track.nominalFrameRate;
  file.sourceMbps = geometry.track.estimatedDataRate / kBitsPerMegabit;
  file.sourceBytes = sizeInBytes(path);
  file.sourceIsHDR = VideoExporter::colorInfo(geometry.track).isHDR();
  return file;
}

/// Reads a file with all its facts: what is no image is tried as a video. Blocking, any thread.
SourceFile readFile(const std::filesystem::path& path, const std::stop_token& stop) {
  return ContentType::ofFile(path).isImage() ? readImage(path, stop) : readVideo(path, stop);
}

/// How an image begins: uncropped; a JPEG stays one, everything else becomes a PNG.
CropEdit initialImageEdit(const SourceFile& file) {
  CropEdit edit;
  edit.crop = CropMargins::fullImage(file.sourceSize, kImagePixelStep);
  if (file.imageSource->type == ContentType::jpeg()) {
    edit.imageEncoding.format = ImageEncodingSettings::Format::jpeg;
  }
  return edit;
}

/// How a video begins: as little cropped as may be, at its own bitrate, with the codec of the
/// window's last video where its dynamic range allows that.
CropEdit initialVideoEdit(const SourceFile& file, EncodingSettings::Codec lastCodec) {
  CropEdit edit;
  edit.crop = CropMargins::fullImage(file.sourceSize, kVideoPixelStep);
  edit.encoding.codec = file.sourceIsHDR ? EncodingSettings::Codec::hevc : lastCodec;
  edit.encoding.megabitsPerSecond = file.originalBitrate();
  return edit;
}

/// The first that is a file of this computer, or else the first.
QUrl firstFile(const QList<QUrl>& urls) {
  const auto local = std::find_if(urls.begin(), urls.end(),
                                  [](const QUrl& url) { return localFile(url).has_value(); });
  if (local != urls.end()) return *local;
  return urls.value(0);
}

}  // namespace

MediaLoader::MediaLoader(EditorState& state, QObject* parent) : QObject(parent), m_state(state) {}

MediaLoader::~MediaLoader() {
  cancel();
}

void MediaLoader::cancel() {
  for (const auto& [load, task] : m_running)
    task->cancel();
}

QString MediaLoader::openFilter() {
  const QMimeDatabase database;
  QStringList patterns;
  for (const QMimeType& type : database.allMimeTypes()) {
    if (type.name().startsWith(QLatin1String("video/"))) patterns += type.globPatterns();
  }
  for (const ContentType& type : ImageSource::supportedTypes()) {
    patterns += database.mimeTypeForName(type.name()).globPatterns();
  }
  patterns.removeDuplicates();
  return tr("Images and Videos") + QStringLiteral(" (") + patterns.join(u' ') + u')';
}

void MediaLoader::loadMedia(const std::filesystem::path& path) {
  m_state.exportState().setProgress({});
  m_state.setBusy(true);
  const int64_t load = ++m_loads;
  m_running[load] = std::make_unique<BackgroundTask<SourceFile>>(
      [path](const std::stop_token& stop) { return readFile(path, stop); },
      [this, load](BackgroundTask<SourceFile>::Outcome outcome) {
        finish(load, std::move(outcome));
      });
}

void MediaLoader::finish(int64_t load, BackgroundTask<SourceFile>::Outcome outcome) {
  m_running.erase(load);
  try {
    SourceFile file = outcome.get();
    const bool isVideo = file.movie.has_value();
    const CropEdit edit =
        isVideo ? initialVideoEdit(file, m_state.history().codec()) : initialImageEdit(file);
    m_state.replaceFile(std::move(file), edit, isVideo ? kVideoPixelStep : kImagePixelStep);
  } catch (const Cancelled&) {
    // Whoever cancels knows.
  } catch (...) {
    m_state.setOpenError(userText(std::current_exception()));
  }
  m_state.setBusy(false);
}

std::optional<std::filesystem::path> MediaLoader::bundledSample() {
  return bundledFile(QStringLiteral("Vantrel Sample.mov"));
}

void MediaLoader::loadSample(const std::optional<std::filesystem::path>& sample) {
  if (sample) {
    loadMedia(*sample);
  } else {
    m_state.setOpenError(tr("The bundled sample video is unavailable."));
  }
}

bool MediaLoader::acceptsMedia(const QMimeData& data) const {
  return !m_state.busy() && (!data.urls().isEmpty() || PortalTransfer::isOffered(data));
}

bool MediaLoader::receiveMedia(const QMimeData& data) {
  if (!acceptsMedia(data)) return false;
  const QUrl url = firstFile(data.urls());
  if (const auto key = PortalTransfer::keyOf(data)) {
    PortalTransfer::retrieve(*key, *this,
                             [this, url](const QStringList& paths, const QString& error) {
                               receivePortalFiles(paths, url, error);
                             });
  } else {
    QMetaObject::invokeMethod(
        this, [this, url] { receiveUrl(url); }, Qt::QueuedConnection);
  }
  return true;
}

void MediaLoader::receivePortalFiles(const QStringList& paths, const QUrl& otherwise,
                                     const QString& error) {
  if (!paths.isEmpty()) {
    receiveUrl(QUrl::fromLocalFile(paths.first()));
  } else if (localFile(otherwise) || error.isEmpty()) {
    receiveUrl(otherwise);
  } else if (!m_state.busy()) {
    m_state.setOpenError(error);
  }
}

void MediaLoader::receiveUrl(const QUrl& url) {
  if (m_state.busy()) return;
  if (const auto path = localFile(url)) {
    loadMedia(*path);
  } else {
    m_state.setOpenError(tr("Drop a local image or video file."));
  }
}

void MediaLoader::closeMedia() {
  if (m_state.busy()) return;
  endTextEditing();
  m_state.closeFile();
}

}  // namespace vantrel
