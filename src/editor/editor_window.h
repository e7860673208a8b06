#pragma once

#include <QMainWindow>

#include "editor/export_session.h"

class QAction;
class QActionGroup;

namespace vantrel {

class EditorView;

/// A window with one editor: title, menus and tool bar. Closing it deletes it and cancels what runs
/// in it.
class EditorWindow final : public QMainWindow {
  Q_OBJECT

 public:
  explicit EditorWindow(ExportSession::Review review, QWidget* parent = nullptr);
  ~EditorWindow() override;

  [[nodiscard]] EditorView* view() const { return m_view; }

 Q_SIGNALS:
  void newWindowRequested();
  void quitRequested();

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void buildFileMenu();
  void buildEditMenu();
  void buildViewMenu();
  void buildCropMenu();
  void buildToolBar();
  void updateActions();
  void updateIcons();

  EditorView* m_view;
  QAction* m_open = nullptr;
  QAction* m_closeFile = nullptr;
  QAction* m_export = nullptr;
  QAction* m_undo = nullptr;
  QAction* m_redo = nullptr;
  QAction* m_preview = nullptr;
  /// What looks at an open file in another way.
  QActionGroup* m_viewing = nullptr;
  // The buttons follow the history alone, the menu items also serve the text being typed.
  QAction* m_undoButton = nullptr;
  QAction* m_redoButton = nullptr;
};

}  // namespace vantrel
