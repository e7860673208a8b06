#include "review/export_review_document.h"

#include <utility>

#include "base/failure.h"
#include "platform/desktop/atomic_file.h"

namespace vantrel {

ExportReviewDocument::ExportReviewDocument(TemporaryExport file, QString title,
                                           ExportSummary summary, ContentType contentType,
                                           QObject* parent)
    : QObject(parent),
      m_file(std::move(file)),
      m_displayName(std::move(title)),
      m_summary(std::move(summary)),
      m_contentType(std::move(contentType)) {}

ExportReviewDocument::~ExportReviewDocument() {
  close();
}

std::filesystem::path ExportReviewDocument::temporaryExportPath() const {
  return m_file ? m_file->path() : std::filesystem::path();
}

QString ExportReviewDocument::filenameExtension() const {
  if (m_contentType == ContentType::jpeg()) return QStringLiteral("jpg");
  const QString extension = m_contentType.preferredFilenameExtension();
  return extension.isEmpty() ? QStringLiteral("mov") : extension;
}

QString ExportReviewDocument::suggestedFileName() const {
  const QString ending = u'.' + filenameExtension();
  return m_displayName.endsWith(ending) ? m_displayName : m_displayName + ending;
}

void ExportReviewDocument::save(const std::filesystem::path& destination) {
  if (isSaving() || isClosed()) return;
  m_save = std::make_unique<BackgroundTask<void>>(
      [source = m_file->path(), destination](const std::stop_token& stop) {
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
  if (isClosed()) return;
  m_save.reset();
  m_file.reset();
  Q_EMIT closed();
}

}  // namespace vantrel
