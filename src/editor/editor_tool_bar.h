#pragma once

#include <QToolBar>

class QAction;

namespace vantrel {

class EditorState;
class ZoomControls;

/// The tool bar of an editor: opening, undo and redo at one end; preview, zoom and inspector at the
/// other. Main thread.
class EditorToolBar final : public QToolBar {
  Q_OBJECT

 public:
  /// What the menus of the window offer too. Of `undo` and `redo` only the keys are taken: the
  /// buttons follow the history alone, the menu items also serve the text being typed.
  struct MenuActions {
    QAction *open, *undo, *redo, *preview, *inspector;
  };

  /// All of them outlive the bar.
  EditorToolBar(EditorState& state, const MenuActions& actions, QWidget* parent = nullptr);

  [[nodiscard]] ZoomControls* zoom() const { return m_zoom; }

  /// Takes over what the state now is; the actions of the menus stay as they are but for icons.
  void updateState();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void buildEditing();
  void buildViewing();
  void addGap();
  void updateIcons();

  EditorState& m_state;
  MenuActions m_actions;
  QAction* m_undo = nullptr;
  QAction* m_redo = nullptr;
  ZoomControls* m_zoom = nullptr;
};

}  // namespace vantrel
