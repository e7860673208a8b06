#include "editor/export_session.h"

#include <exception>
#include <utility>

#include "base/cancelled.h"
#include "base/failure.h"
#include "editor/text_editing.h"
#include "export/export_temporary_storage.h"

namespace vantrel {

ExportSession::ExportSession(EditorState& state, Review review, QObject* parent)
    : QObject(parent), m_state(state), m_review(std::move(review)) {}

ExportSession::~ExportSession() = default;

void ExportSession::exportMedia() {
  // First, since what is committed can change whether the crop may be exported.
  endTextEditing();
  if (m_state.canExport() && m_state.isImage()) exportImage();
}

void ExportSession::cancel() {
  if (m_operation) m_operation->cancel();
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
  progress.setProgress(0.0);
  progress.setIndeterminate(true);
  progress.setMessage({});
  m_operation = std::make_unique<ImageExportOperation>(
      std::move(request),
      [this](ImageExportOperation::Outcome outcome) { finish(std::move(outcome)); });
}

void ExportSession::finish(ImageExportOperation::Outcome outcome) {
  CropExportState& progress = m_state.exportState();
  try {
    m_review(outcome.get());
  } catch (const Cancelled&) {
    progress.setMessage(CropExportState::Message::cancelled);
  } catch (...) {
    progress.setMessage(CropExportState::Message::failed);
    m_state.setExportError(QString::fromStdString(userMessage(std::current_exception())));
  }
  m_state.setBusy(false);
  progress.setProgress({});
  progress.setIndeterminate(false);
  m_operation.reset();
}

}  // namespace vantrel
