#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <filesystem>
#include <optional>

#include "editor/export_notices.h"
#include "editor/task_bar_progress.h"
#include "export/finished_export.h"

class QUuid;

namespace vantrel {

class CropMenuBar;
class EditorView;
class EditorWindow;
class ReviewWindow;

/// Opens the windows of the process, moves tabs between them, and quits it. Windows belong to
/// themselves; they share nothing but the registry and the session folder. Main thread.
class ApplicationWindows final : public QObject {
  Q_OBJECT

 public:
  /// Takes files that the desktop sends to the application, and its wish that it quits. When the
  /// application ends, no window is left.
  explicit ApplicationWindows(QObject* parent = nullptr);

  /// A window of its own for a new editor.
  EditorWindow* openEditor();
  /// A new editor as a tab of `window`, or in a window of its own when that is gone by then.
  EditorWindow* openTab(EditorWindow* window);
  /// An idle editor without a file takes the file, and comes to the front: first that of the active
  /// window. If there is none, a new one in a window of its own does.
  EditorWindow* openFile(const std::filesystem::path& path);
  ReviewWindow* openReview(FinishedExport finished);
  /// Takes a tab to the window that has its tabs at this point of the screen, or else into a window
  /// of its own there; without a point, beside the window where it was.
  void moveTab(EditorView* editor, const std::optional<QPoint>& globalPosition);

  /// Asks for each review that is not saved, one after the other, and ends the process when all are
  /// closed. Going back on one of them ends the quitting.
  void quit();
  /// Ends the process without a question: what runs is cancelled, and what is not saved is lost.
  void end();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void connectMenus(CropMenuBar& menus);
  /// What a window opens for.
  enum class Content { none, picture };

  EditorWindow* openEditorAs(const QUuid& identity, Content content);
  [[nodiscard]] EditorView* makeEditor(const QUuid& identity);
  void showWindow(EditorWindow& window, const std::optional<QPoint>& globalPosition);
  void connectWindow(EditorWindow& window);
  /// Shows a new window with this editor.
  EditorWindow* openWindow(EditorView* editor, const std::optional<QPoint>& globalPosition);
  [[nodiscard]] EditorView* idleEditor() const;
  void continueQuitting();

  /// The editors' window that was in front last.
  QPointer<EditorWindow> m_front;
  ExportNotices m_notices;
  TaskBarProgress m_taskBar;
  bool m_quitting = false;
  /// All reviews are closed, so that nothing is left to ask.
  bool m_ending = false;
};

}  // namespace vantrel
