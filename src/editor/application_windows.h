#pragma once

#include <QObject>
#include <filesystem>

#include "editor/export_notices.h"
#include "editor/task_bar_progress.h"
#include "export/finished_export.h"

namespace vantrel {

class EditorWindow;
class ReviewWindow;

/// Opens the windows of the process and quits it. Windows belong to themselves; they share nothing
/// but the session folder. Main thread.
class ApplicationWindows final : public QObject {
  Q_OBJECT

 public:
  /// Takes files that the desktop sends to the application, and its wish that it quits.
  explicit ApplicationWindows(QObject* parent = nullptr);

  EditorWindow* openEditor();
  /// An idle editor without a file takes the file; if there is none, a new one does.
  EditorWindow* openFile(const std::filesystem::path& path);
  ReviewWindow* openReview(FinishedExport finished);

  /// Asks for each review that is not saved, one after the other, and ends the process when all are
  /// closed. Going back on one of them ends the quitting.
  void quit();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// What a window opens for.
  enum class Content { none, picture };

  EditorWindow* openEditor(Content content);
  void continueQuitting();

  ExportNotices m_notices;
  TaskBarProgress m_taskBar;
  bool m_quitting = false;
};

}  // namespace vantrel
