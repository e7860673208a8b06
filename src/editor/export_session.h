#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "editor/editor_state.h"
#include "export/image_export_operation.h"
#include "export/video_export_operation.h"

namespace vantrel {

/// The exports of one editor, one at a time: from the command to the review. Each ends in one of
/// three ways: the finished file goes to the review, or it is cancelled, or it failed; the editor
/// is as before. Main thread; the destructor cancels and waits.
class ExportSession final : public QObject {
  Q_OBJECT

 public:
  /// Opens the review of a finished export, which is its own from then on.
  using Review = std::function<void(FinishedExport)>;

  ExportSession(EditorState& state, Review review, QObject* parent = nullptr);
  ~ExportSession() override;

  /// Commits what is being typed, and starts unless the state forbids it.
  void exportMedia();
  /// Nothing when no export runs. The outcome comes later.
  void cancel();

 Q_SIGNALS:
  /// An export is asked for, and may start next.
  void requested();
  /// An export has ended well, as a file to be called `name`; its review opens next.
  void finished(const QString& name);
  /// An export has failed; `message` is for the user.
  void failed(const QString& message);

 private:
  /// Of either kind of operation.
  using Outcome = BackgroundTask<FinishedExport>::Outcome;

  void exportImage();
  void exportVideo();
  void finish(Outcome outcome);

  EditorState& m_state;
  Review m_review;
  // At most one of them runs.
  std::unique_ptr<ImageExportOperation> m_imageOperation;
  std::unique_ptr<VideoExportOperation> m_videoOperation;
};

}  // namespace vantrel
