#pragma once

#include <QMenuBar>
#include <QPointer>

class QAction;
class QActionGroup;

namespace vantrel {

class EditorView;

/// The menu bar, alike in every window. Its commands go to one editor, the current one of its
/// window; where there is none, as in the window of a review, they are disabled. Main thread.
class CropMenuBar final : public QMenuBar {
  Q_OBJECT

 public:
  explicit CropMenuBar(QWidget* parent = nullptr);
  ~CropMenuBar() override;

  /// Null for none.
  void setEditor(EditorView* editor);

  // What a tool bar offers too.
  [[nodiscard]] QAction* openAction() const { return m_open; }
  [[nodiscard]] QAction* undoAction() const { return m_undo; }
  [[nodiscard]] QAction* redoAction() const { return m_redo; }
  [[nodiscard]] QAction* previewAction() const { return m_preview; }
  [[nodiscard]] QAction* inspectorAction() const { return m_inspector; }

  /// Takes over what the editor now offers.
  void updateCommands();

 Q_SIGNALS:
  void newWindowRequested();
  /// A tab beside the editor.
  void newTabRequested();
  void closeRequested();
  void quitRequested();

 private:
  void buildFileMenu();
  void buildEditMenu();
  void buildViewMenu();
  void buildCropMenu();

  QPointer<EditorView> m_editor;
  QAction* m_open = nullptr;
  QAction* m_closeFile = nullptr;
  QAction* m_export = nullptr;
  QAction* m_undo = nullptr;
  QAction* m_redo = nullptr;
  QAction* m_inspector = nullptr;
  QAction* m_preview = nullptr;
  /// What looks at an open file in another way.
  QActionGroup* m_viewing = nullptr;
};

}  // namespace vantrel
