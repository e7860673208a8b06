#pragma once

#include <QToolBar>

class QAction;

namespace vantrel {

class CropMenuBar;
enum class CropCommand;
class EditorState;
class ZoomControls;

/// The tool bar of an editor: opening, undo and redo at one end; preview, zoom and inspector at the
/// other. Main thread.
class EditorToolBar final : public QToolBar {
  Q_OBJECT

 public:
  /// Does what the menus do, and tells their keys. `menus` outlives the bar.
  explicit EditorToolBar(CropMenuBar& menus, QWidget* parent = nullptr);

  [[nodiscard]] QAction* openAction() const { return m_open; }
  /// Undo and Redo follow the history alone; the items of the menus also serve text being typed.
  [[nodiscard]] QAction* undoAction() const { return m_undo; }
  [[nodiscard]] QAction* redoAction() const { return m_redo; }
  [[nodiscard]] QAction* previewAction() const { return m_preview; }
  [[nodiscard]] ZoomControls* zoom() const { return m_zoom; }
  [[nodiscard]] QAction* inspectorAction() const { return m_inspector; }

  /// The editor shown, null for none. It outlives its being shown.
  void setState(EditorState* state);
  /// Takes over what the state now is.
  void updateState();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void buildEditing();
  void buildViewing();
  QAction* addCommand(CropCommand command, const QString& help);
  void addGap(int width);
  void updateHeight();
  void updateIcons();

  CropMenuBar& m_menus;
  EditorState* m_state = nullptr;
  QAction* m_open = nullptr;
  QAction* m_undo = nullptr;
  QAction* m_redo = nullptr;
  QAction* m_preview = nullptr;
  ZoomControls* m_zoom = nullptr;
  QAction* m_inspector = nullptr;
};

}  // namespace vantrel
