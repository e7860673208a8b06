#pragma once

#include <QObject>
#include <QString>
#include <filesystem>
#include <memory>

#include "export/finished_export.h"
#include "platform/desktop/background_task.h"

namespace vantrel {

/// A finished export that waits to be looked at and saved. It owns the temporary file: saving
/// copies it, closing deletes it. Unsaved from the start, and saved as often as is wished. Main
/// thread.
class ExportReviewDocument final : public QObject {
  Q_OBJECT

 public:
  explicit ExportReviewDocument(FinishedExport finished, QObject* parent = nullptr);
  /// Closes.
  ~ExportReviewDocument() override;

  [[nodiscard]] const QString& displayName() const { return m_export.title; }
  [[nodiscard]] const ExportSummary& summary() const { return m_export.summary; }
  [[nodiscard]] const ContentType& contentType() const { return m_export.contentType; }
  /// The finished file; empty once the document is closed.
  [[nodiscard]] const std::filesystem::path& temporaryExportPath() const {
    return m_export.file.path();
  }
  [[nodiscard]] bool isUnsaved() const { return m_unsaved; }
  [[nodiscard]] bool isSaving() const { return m_save != nullptr; }
  [[nodiscard]] bool isClosed() const { return m_closed; }

  /// Without a point: "jpg" for a JPEG, otherwise the type's own, "mov" if it has none.
  [[nodiscard]] QString filenameExtension() const;
  /// What a save dialog proposes: the title, with the extension if it does not end in it.
  [[nodiscard]] QString suggestedFileName() const;

  /// Copies the file in the background; ends in `saved` or `saveFailed`. Nothing while another save
  /// runs or after `close`.
  void save(const std::filesystem::path& destination);
  /// Cancels a save that runs and deletes the temporary file. Again: nothing.
  void close();

 Q_SIGNALS:
  void saved();
  /// The document is as it was; `message` is for the user.
  void saveFailed(const QString& message);
  void closed();

 private:
  void finishSave(BackgroundTask<void>::Outcome outcome);

  FinishedExport m_export;
  bool m_unsaved = true;
  bool m_closed = false;
  std::unique_ptr<BackgroundTask<void>> m_save;
};

}  // namespace vantrel
