#pragma once

#include <QToolBar>

class QAction;

namespace vantrel {

class CropMenuBar;
class EditorState;
class ZoomControls;

/// The tool bar of an editor: opening, undo and redo at one end; preview, zoom and inspector at the
/// other. Main thread.
class EditorToolBar final : public QToolBar {
  Q_OBJECT

 public:
  /// Offers what the menus do, with their keys. The buttons of Undo and Redo follow the history
  /// alone, the menu items also serve the text being typed. `menus` outlives the bar.
  explicit EditorToolBar(const CropMenuBar& menus, QWidget* parent = nullptr);

  /// The editor shown, null for none. It outlives its being shown.
  void setState(EditorState* state);
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

  EditorState* m_state = nullptr;
  const CropMenuBar& m_menus;
  QAction* m_undo = nullptr;
  QAction* m_redo = nullptr;
  ZoomControls* m_zoom = nullptr;
};

}  // namespace vantrel
