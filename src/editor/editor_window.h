#pragma once

#include <QMainWindow>

#include "editor/export_session.h"

namespace vantrel {

class CropMenuBar;
class EditorToolBar;
class EditorView;

/// A window with one editor: title, menus and tool bar. Closing it deletes it and cancels what runs
/// in it.
class EditorWindow final : public QMainWindow {
  Q_OBJECT

 public:
  explicit EditorWindow(ExportSession::Review review, QWidget* parent = nullptr);
  ~EditorWindow() override;

  [[nodiscard]] EditorView* view() const { return m_view; }
  [[nodiscard]] CropMenuBar* commands() const { return m_menuBar; }
  [[nodiscard]] EditorToolBar* toolBar() const { return m_toolBar; }

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void updateWindow();

  EditorView* m_view;
  CropMenuBar* m_menuBar = nullptr;
  EditorToolBar* m_toolBar = nullptr;
};

}  // namespace vantrel
