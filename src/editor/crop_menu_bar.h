#pragma once

#include <QMenuBar>
#include <QPointer>
#include <array>
#include <functional>
#include <initializer_list>

#include "editor/crop_window_commands.h"

class QAction;
class QKeyEvent;
class QKeySequence;
class QLineEdit;
class QMenu;

namespace vantrel {

class EditorView;
class ReviewWindow;

/// The menu bar, alike in every window. Its commands go to one editor, the current one of its
/// window; where there is none, as in the window of a review, they are disabled. Their keys hold in
/// the whole window: in text fields, and while the bar is hidden. Main thread.
class CropMenuBar final : public QMenuBar {
  Q_OBJECT

 public:
  /// Finds the review that is in front; null for none.
  using FindReview = std::function<ReviewWindow*()>;

  /// `window` is the one that shows the bar.
  explicit CropMenuBar(QWidget* window);
  ~CropMenuBar() override;

  [[nodiscard]] QAction* action(CropCommand command) const;

  /// Null for none.
  void setEditor(EditorView* editor);
  /// Says which review "Save…" is for; updateCommands is to be called when that changes.
  void setFindReview(FindReview find);
  /// Whether the editor is one of several tabs, so that its tab is what closes.
  void setInTabs(bool isInTabs);

  /// Takes over what the editor now offers.
  void updateCommands();
  /// As if chosen from the menu: only where it is allowed at this moment.
  void perform(CropCommand command);

 Q_SIGNALS:
  void newWindowRequested();
  /// A tab beside the editor.
  void newTabRequested();
  void closeRequested();
  void quitRequested();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  using Keys = QList<QKeySequence>;

  void buildMenus();
  /// The key that opens the first menu, as on other desktops.
  void addMenuKey(QWidget& window);
  QMenu* buildMenu(const QString& title);
  void add(QMenu& menu, CropCommand command, const Keys& keys = {});
  void addRepeating(QMenu& menu, CropCommand command, const Keys& keys);
  void addChoices(QMenu& menu, CropCommand name, std::initializer_list<CropCommand> choices);
  void take(QAction* action, CropCommand command);
  void followFocus();
  [[nodiscard]] CropWindowCommands commands();
  [[nodiscard]] ReviewWindow* activeReview() const;
  [[nodiscard]] bool isKeyOfCommand(const QKeyEvent& event) const;

  QPointer<EditorView> m_editor;
  FindReview m_findReview;
  bool m_isInTabs = false;
  std::array<QAction*, kCropCommands> m_actions{};
  /// That has the focus of the window, or has lent it to an open menu.
  QPointer<QLineEdit> m_field;
};

}  // namespace vantrel
