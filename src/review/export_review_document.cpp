#include "review/export_review_document.h"

#include <utility>

#include "base/cancelled.h"
#include "platform/desktop/file_error.h"
#include "platform/desktop/user_text.h"
#include "platform/image/image_reader.h"

namespace vantrel {

ExportReviewDocument::ExportReviewDocument(FinishedExport finished, OpenPlayer open, CopyFile copy,
                                           QObject* parent)
    : QObject(parent),
      m_export(std::move(finished)),
      m_open(std::move(open)),
      m_copy(std::move(copy)) {}

ExportReviewDocument::~ExportReviewDocument() {
  close();
}

bool ExportReviewDocument::showsImage() const {
  return contentType().isImage() && ImageReader::open(temporaryExportPath());
}

QString ExportReviewDocument::filenameExtension() const {
  if (contentType() == ContentType::jpeg()) return QStringLiteral("jpg");
  const QString extension = contentType().preferredFilenameExtension();
  return extension.isEmpty() ? QStringLiteral("mov") : extension;
}

QString ExportReviewDocument::suggestedFileName() const {
  return proposedFileName(displayName(), filenameExtension());
}

QString ExportReviewDocument::withExtension(const QString& fileName) const {
  const QString ending = u'.' + filenameExtension();
  const bool isNamed = contentType().isExtensionOf(fileName) || fileName.endsWith(ending);
  return isNamed ? fileName : fileName + ending;
}

void ExportReviewDocument::save(const std::filesystem::path& destination) {
  if (isSaving() || isClosed()) return;
  m_savingName = vantrel::displayName(destination);
  m_save = std::make_unique<FileSave>(
      m_copy, temporaryExportPath(), destination,
      [this](double fraction) { Q_EMIT saveProgressed(fraction); },
      [this](FileSave::Outcome outcome) { finishSave(std::move(outcome)); });
  Q_EMIT savingChanged();
}

void ExportReviewDocument::cancelSave() {
  if (m_save) m_save->cancel();
}

void ExportReviewDocument::finishSave(FileSave::Outcome outcome) {
  m_save.reset();
  Q_EMIT savingChanged();
  try {
    outcome.get();
  } catch (const Cancelled&) {
    Q_EMIT saveCancelled();
    return;
  } catch (...) {
    Q_EMIT saveFailed(userText(std::current_exception()));
    return;
  }
  m_unsaved = false;
  Q_EMIT saved();
}

void ExportReviewDocument::close() {
  if (std::exchange(m_closed, true)) return;
  m_save.reset();
  releasePlayer();
  m_export.file.remove();
  Q_EMIT closed();
}

void ExportReviewDocument::openPlayer() {
  if (m_opening || m_player || isClosed()) return;
  m_opening = std::make_unique<BackgroundTask<MakePlayer>>(
      [open = m_open, path = temporaryExportPath()](const std::stop_token& stop) {
        return open(path, stop);
      },
      [this](BackgroundTask<MakePlayer>::Outcome outcome) { takePlayer(std::move(outcome)); });
}

void ExportReviewDocument::takePlayer(BackgroundTask<MakePlayer>::Outcome outcome) {
  m_opening.reset();
  try {
    m_player = outcome.get()();
  } catch (const std::exception&) {
    return;
  }
  m_playback.setDuration(m_player->duration());
  m_playback.connectTo(m_player.get());
}

void ExportReviewDocument::toggleLoop() {
  m_playback.setLooping(!m_playback.isLooping());
  Q_EMIT loopEnabledChanged();
}

void ExportReviewDocument::releasePlayer() {
  m_opening.reset();
  m_playback.disconnectPlayer();
  if (!m_player) return;
  m_player->pause();
  m_player.reset();
}

}  // namespace vantrel
