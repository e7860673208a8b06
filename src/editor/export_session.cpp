#include "editor/export_session.h"

#include <exception>
#include <utility>

#include "base/cancelled.h"
#include "controls/text_editing.h"
#include "export/export_temporary_storage.h"
#include "platform/desktop/user_text.h"

namespace vantrel {

ExportSession::ExportSession(EditorState& state, Review review, QObject* parent)
    : QObject(parent), m_state(state), m_review(std::move(review)) {}

ExportSession::~ExportSession() = default;

void ExportSession::exportMedia() {
  Q_EMIT requested();
  // First, since what is committed can change whether the crop may be exported.
  endTextEditing();
  if (!m_state.canExport() || m_imageOperation || m_videoOperation) return;
  if (m_state.isImage()) {
    exportImage();
  } else {
    exportVideo();
  }
}

void ExportSession::cancel() {
  if (m_imageOperation) m_imageOperation->cancel();
  if (m_videoOperation) m_videoOperation->cancel();
}

void ExportSession::exportImage() {
  const SourceFile& file = *m_state.file();
  const ImageEncodingSettings& settings = m_state.history().imageEncoding();
  ImageExportRequest request{*file.imageSource, m_state.history().crop().rectangle(file.sourceSize),
                             settings, file.path,
                             ExportTemporaryStorage::shared().newExportPath(
                                 ImageEncodingSettings::fileExtension(settings.format))};

  CropExportState& progress = m_state.exportState();
  m_state.setBusy(true);
  progress.setBytes(0);
  // First, so that nobody takes the progress for a percentage.
  progress.setIndeterminate(true);
  progress.setProgress(0.0);
  progress.setMessage({});
  m_imageOperation = std::make_unique<ImageExportOperation>(
      std::move(request), [this](Outcome outcome) { finish(std::move(outcome)); });
}

void ExportSession::exportVideo() {
  const SourceFile& file = *m_state.file();
  const EditHistory& history = m_state.history();
  VideoExportRequest request{file.path, history.crop().rectangle(file.sourceSize),
                             history.value().encoding, file.sourceIsHDR,
                             ExportTemporaryStorage::shared().newExportPath(
                                 ContentType::quickTimeMovie().preferredFilenameExtension())};

  CropExportState& progress = m_state.exportState();
  m_state.setPreviewOnly(false);
  m_state.setShowInspector(true);
  if (m_state.player()) m_state.player()->pause();
  m_state.setBusy(true);
  const QUuid operation = QUuid::createUuid();
  progress.setOperation(operation);
  progress.setBytes(0);
  progress.setProgress(0.0);
  progress.setMessage({});
  // A report that comes late must not be taken for one of a later export.
  const auto isCurrent = [&progress, operation] { return progress.operation() == operation; };
  m_videoOperation = std::make_unique<VideoExportOperation>(
      std::move(request),
      VideoExportOperation::Reports{[&progress, isCurrent](int64_t bytes) {
                                      if (isCurrent()) progress.setBytes(bytes);
                                    },
                                    [&progress, isCurrent](double fraction) {
                                      if (isCurrent()) progress.setProgress(fraction);
                                    }},
      [this](Outcome outcome) { finish(std::move(outcome)); });
}

void ExportSession::finish(Outcome outcome) {
  CropExportState& progress = m_state.exportState();
  try {
    FinishedExport done = outcome.get();
    Q_EMIT finished(done.title);
    m_review(std::move(done));
  } catch (const Cancelled&) {
    progress.setMessage(CropExportState::Message::cancelled);
  } catch (...) {
    progress.setMessage(CropExportState::Message::failed);
    const QString message = userText(std::current_exception());
    m_state.setExportError(message);
    Q_EMIT failed(message);
  }
  m_state.setBusy(false);
  progress.setOperation({});
  progress.setProgress({});
  progress.setIndeterminate(false);
  m_imageOperation.reset();
  m_videoOperation.reset();
}

}  // namespace vantrel
