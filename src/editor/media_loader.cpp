#include "editor/media_loader.h"

#include <QFile>
#include <QMimeData>
#include <QMimeDatabase>
#include <QUrl>
#include <algorithm>
#include <functional>
#include <utility>

#include "base/failure.h"
#include "editor/text_editing.h"

namespace vantrel {
namespace {

constexpr int64_t kImagePixelStep = 1;

/// Reads an image with all its facts. Blocking, any thread.
SourceFile readFile(const std::filesystem::path& path, const std::stop_token& stop) {
  if (!ContentType::ofFile(path).isImage()) throw ImageError(ImageError::unsupported);
  SourceFile file;
  file.path = path;
  file.imageSource = ImageSource::load(path, stop);
  const ImageSource& source = *file.imageSource;
  file.sourceSize = {static_cast<double>(source.image.width()),
                     static_cast<double>(source.image.height())};
  file.sourceBytes = source.bytes;
  return file;
}

/// How an image begins: uncropped; a JPEG stays one, everything else becomes a PNG.
CropEdit initialEdit(const SourceFile& file) {
  CropEdit edit;
  edit.crop = CropMargins::fullImage(file.sourceSize, kImagePixelStep);
  if (file.imageSource->type == ContentType::jpeg()) {
    edit.imageEncoding.format = ImageEncodingSettings::Format::jpeg;
  }
  return edit;
}

}  // namespace

MediaLoader::MediaLoader(EditorState& state, QObject* parent) : QObject(parent), m_state(state) {}

MediaLoader::~MediaLoader() {
  for (const auto& [load, task] : m_running)
    task->cancel();
}

QString MediaLoader::openFilter() {
  const QMimeDatabase database;
  QStringList patterns;
  for (const ContentType& type : ImageSource::supportedTypes()) {
    patterns += database.mimeTypeForName(type.name()).globPatterns();
  }
  patterns.removeDuplicates();
  return tr("Images") + QStringLiteral(" (") + patterns.join(u' ') + u')';
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
    const CropEdit edit = initialEdit(file);
    m_state.replaceFile(std::move(file), edit, kImagePixelStep);
  } catch (...) {
    m_state.setOpenError(QString::fromStdString(userMessage(std::current_exception())));
  }
  m_state.setBusy(false);
}

bool MediaLoader::acceptsMedia(const QMimeData& data) const {
  return !m_state.busy() && data.hasUrls() && !data.urls().isEmpty();
}

bool MediaLoader::receiveMedia(const QMimeData& data) {
  if (!acceptsMedia(data)) return false;
  const QList<QUrl> urls = data.urls();
  const auto local = std::find_if(urls.begin(), urls.end(), std::mem_fn(&QUrl::isLocalFile));
  const QUrl url = local == urls.end() ? urls.first() : *local;
  QMetaObject::invokeMethod(
      this, [this, url] { receiveUrl(url); }, Qt::QueuedConnection);
  return true;
}

void MediaLoader::receiveUrl(const QUrl& url) {
  if (m_state.busy()) return;
  if (url.isLocalFile()) {
    loadMedia(QFile::encodeName(url.toLocalFile()).toStdString());
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
