#include "review/export_review_document.h"

#include <utility>

#include "base/failure.h"
#include "platform/desktop/atomic_file.h"

namespace vantrel {

ExportReviewDocument::ExportReviewDocument(FinishedExport finished, QObject* parent)
    : QObject(parent), m_export(std::move(finished)) {}

ExportReviewDocument::~ExportReviewDocument() {
  close();
}

QString ExportReviewDocument::filenameExtension() const {
  if (contentType() == ContentType::jpeg()) return QStringLiteral("jpg");
  const QString extension = contentType().preferredFilenameExtension();
  return extension.isEmpty() ? QStringLiteral("mov") : extension;
}

QString ExportReviewDocument::suggestedFileName() const {
  const QString ending = u'.' + filenameExtension();
  return displayName().endsWith(ending) ? displayName() : displayName() + ending;
}

void ExportReviewDocument::save(const std::filesystem::path& destination) {
  if (isSaving() || isClosed()) return;
  m_save = std::make_unique<BackgroundTask<void>>(
      [source = temporaryExportPath(), destination](const std::stop_token& stop) {
        atomicCopy(source, destination, stop);
      },
      [this](BackgroundTask<void>::Outcome outcome) { finishSave(std::move(outcome)); });
}

void ExportReviewDocument::finishSave(BackgroundTask<void>::Outcome outcome) {
  m_save.reset();
  try {
    outcome.get();
  } catch (...) {
    Q_EMIT saveFailed(QString::fromStdString(userMessage(std::current_exception())));
    return;
  }
  m_unsaved = false;
  Q_EMIT saved();
}

void ExportReviewDocument::close() {
  if (std::exchange(m_closed, true)) return;
  m_save.reset();
  m_export.file.remove();
  Q_EMIT closed();
}

}  // namespace vantrel
