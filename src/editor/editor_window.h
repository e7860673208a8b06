#pragma once

#include <QList>
#include <QMainWindow>
#include <optional>

#include "editor/editor_focus.h"
#include "editor/export_session.h"

class QStackedWidget;

namespace vantrel {

class CropMenuBar;
class EditorTabBar;
class EditorTabRow;
class EditorToolBar;
class EditorView;

/// A window with editors in tabs, of which it shows one: its title, menus and tool bar are those of
/// the window. Closing the window, or its last tab, deletes it and cancels what runs in it; what
/// takes its time to end does so out of sight.
class EditorWindow final : public QMainWindow {
  Q_OBJECT

 public:
  /// Takes over `editor`, also from another window.
  explicit EditorWindow(EditorView* editor);
  /// Empty: it can be on its way to the screen while its editor is made. `furnish` has to follow in
  /// the same turn of the event loop.
  EditorWindow();
  /// With a new editor.
  explicit EditorWindow(ExportSession::Review review);
  ~EditorWindow() override;

  /// Gives an empty window its bars and this editor.
  void furnish(EditorView* editor);

  /// The one that is shown; null only when the window has given up its last one and closes.
  [[nodiscard]] EditorView* view() const { return m_view; }
  /// In the order of the tabs.
  [[nodiscard]] const QList<EditorView*>& editors() const { return m_editors; }
  [[nodiscard]] CropMenuBar* commands() const { return m_menuBar; }
  [[nodiscard]] EditorToolBar* toolBar() const { return m_toolBar; }
  [[nodiscard]] EditorTabRow* tabRow() const { return m_tabRow; }
  /// It goes, and takes no more editors.
  [[nodiscard]] bool isClosing() const { return m_closing; }

  /// Takes over `editor`, also from another window, and shows it, after the current tab.
  void addEditor(EditorView* editor);
  /// The same, as the tab with this index.
  void insertEditor(int index, EditorView* editor);
  /// Gives `editor` up, alive and without a parent. Closes the window if it was the last.
  void takeEditor(EditorView* editor);
  void selectEditor(EditorView* editor);
  /// Ends `editor` with its tab, and the window if it was the last.
  void closeEditor(EditorView* editor);

  /// Whether a tab that is let go at this point of the screen joins this window, and as which.
  [[nodiscard]] std::optional<int> tabPlaceAt(const QPoint& globalPosition) const;

 Q_SIGNALS:
  void newTabRequested();
  /// A tab was dragged off to this point of the screen, or, without a point, sent away.
  void tabTornOff(vantrel::EditorView* editor, const std::optional<QPoint>& globalPosition);

 protected:
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void buildBars();
  void watchTabs();
  void watchEditor(EditorView* editor);
  void showEditor(EditorView* editor);
  void updateEditor(EditorView* editor);
  void updateTabRow();
  void closeCurrent();

  EditorView* m_view = nullptr;
  QList<EditorView*> m_editors;
  EditorFocus m_focus{*this};
  CropMenuBar* m_menuBar = nullptr;
  EditorTabRow* m_tabRow = nullptr;
  EditorTabBar* m_tabs = nullptr;
  EditorToolBar* m_toolBar = nullptr;
  QStackedWidget* m_stack = nullptr;
  bool m_closing = false;
};

}  // namespace vantrel
