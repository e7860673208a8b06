#include "editor/crop_menu_bar.h"

#include <QActionGroup>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "editor/editor_view.h"
#include "platform/desktop/key_names.h"
#include "review/review_window.h"

namespace vantrel {

CropMenuBar::CropMenuBar(QWidget* window) : QMenuBar(window) {
  buildMenus();
  for (QAction* action : m_actions) {
    // The window's as well: those of a bar that is hidden would have no effect.
    if (!action->shortcuts().isEmpty()) window->addAction(action);
  }
  addMenuKey(*window);
  window->installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, &CropMenuBar::updateCommands);
  connect(qApp, &QApplication::focusWindowChanged, this, &CropMenuBar::updateCommands);
  updateCommands();
}

CropMenuBar::~CropMenuBar() = default;

QAction* CropMenuBar::action(CropCommand command) const {
  return m_actions.at(static_cast<size_t>(command));
}

void CropMenuBar::setEditor(EditorView* editor) {
  if (m_editor) disconnect(m_editor, nullptr, this, nullptr);
  m_editor = editor;
  if (editor) {
    connect(editor, &EditorView::updated, this, &CropMenuBar::updateCommands);
    // By then the pointer still stands, and the editor's state does not.
    connect(editor, &QObject::destroyed, this, [this] {
      m_editor = nullptr;
      updateCommands();
    });
  }
  updateCommands();
}

void CropMenuBar::setFindReview(FindReview find) {
  m_findReview = std::move(find);
  updateCommands();
}

void CropMenuBar::setInTabs(bool isInTabs) {
  m_isInTabs = isInTabs;
  updateCommands();
}

void CropMenuBar::buildMenus() {
  using enum CropCommand;
  QMenu* menu = buildMenu(tr("&File"));
  menu->setToolTipsVisible(true);
  add(*menu, newWindow, {Qt::CTRL | Qt::Key_N});
  add(*menu, newTab, {Qt::CTRL | Qt::Key_T});
  menu->addSeparator();
  add(*menu, open, {Qt::CTRL | Qt::Key_O});
  add(*menu, closeFile, {Qt::CTRL | Qt::ALT | Qt::Key_W});
  menu->addSeparator();
  add(*menu, save, {Qt::CTRL | Qt::Key_S});
  action(save)->setToolTip(tr("Save a finished export from its review window."));
  add(*menu, exportCrop, {Qt::CTRL | Qt::SHIFT | Qt::Key_E});
  menu->addSeparator();
  add(*menu, closeWindow, {Qt::CTRL | Qt::Key_W});
  add(*menu, quit, {Qt::CTRL | Qt::Key_Q});
  action(quit)->setMenuRole(QAction::QuitRole);

  menu = buildMenu(tr("&Edit"));
  addRepeating(*menu, undo, undoKeys());
  addRepeating(*menu, redo, redoKeys());

  menu = buildMenu(tr("&View"));
  // On many keyboards the plus sign is the upper half of the equals key.
  addRepeating(*menu, zoomIn, {Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal});
  addRepeating(*menu, zoomOut, {Qt::CTRL | Qt::Key_Minus});
  add(*menu, zoomToFit, {Qt::CTRL | Qt::Key_0});
  add(*menu, actualSize, {Qt::CTRL | Qt::Key_1});
  menu->addSeparator();
  add(*menu, inspector, {Qt::CTRL | Qt::ALT | Qt::Key_I});

  menu = buildMenu(tr("&Crop"));
  add(*menu, preview, {Qt::CTRL | Qt::Key_P});
  add(*menu, resetCrop);

  menu = buildMenu(tr("E&ncode"));
  addChoices(*menu, format, {png, jpeg});
  addChoices(*menu, codec, {h264, hevc});
  menu->addSeparator();
  for (const CropCommand command : {increaseQuality, decreaseQuality, resetQuality, increaseBitrate,
                                    decreaseBitrate, matchOriginalBitrate}) {
    add(*menu, command);
  }
}

void CropMenuBar::addMenuKey(QWidget& window) {
  auto* const openFirst = new QAction(this);
  openFirst->setShortcut(Qt::Key_F10);
  openFirst->setAutoRepeat(false);
  connect(openFirst, &QAction::triggered, this, [this] {
    if (isVisible()) setActiveAction(actions().constFirst());
  });
  window.addAction(openFirst);
}

QMenu* CropMenuBar::buildMenu(const QString& title) {
  QMenu* menu = addMenu(title);
  connect(menu, &QMenu::aboutToShow, this, &CropMenuBar::updateCommands);
  return menu;
}

void CropMenuBar::add(QMenu& menu, CropCommand command, const Keys& keys) {
  QAction* const action = menu.addAction(QString());
  action->setShortcuts(keys);
  action->setAutoRepeat(false);
  connect(action, &QAction::triggered, this, [this, command] { perform(command); });
  take(action, command);
}

void CropMenuBar::addRepeating(QMenu& menu, CropCommand command, const Keys& keys) {
  add(menu, command, keys);
  action(command)->setAutoRepeat(true);
}

void CropMenuBar::addChoices(QMenu& menu, CropCommand name,
                             std::initializer_list<CropCommand> choices) {
  QMenu* const list = menu.addMenu(QString());
  take(list->menuAction(), name);
  auto* const group = new QActionGroup(list);
  for (const CropCommand choice : choices) {
    add(*list, choice);
    action(choice)->setCheckable(true);
    group->addAction(action(choice));
  }
}

void CropMenuBar::take(QAction* action, CropCommand command) {
  // Else a system that moves items by their names would take "Exit Preview" for the program's end.
  action->setMenuRole(QAction::NoRole);
  m_actions.at(static_cast<size_t>(command)) = action;
}

CropWindowCommands CropMenuBar::commands() {
  followFocus();
  CropWindowCommands commands;
  if (m_editor) {
    commands.actions = m_editor->windowActions();
    commands.history = &m_editor->state().history();
  }
  commands.isEditingText = !m_field.isNull();
  commands.hasActiveReview = activeReview() != nullptr;
  commands.isInTabs = m_isInTabs;
  return commands;
}

ReviewWindow* CropMenuBar::activeReview() const {
  return m_findReview ? m_findReview() : nullptr;
}

void CropMenuBar::updateCommands() {
  const CropWindowCommands now = commands();
  for (int index = 0; index < kCropCommands; ++index) {
    const auto command = static_cast<CropCommand>(index);
    QAction* const item = action(command);
    item->setText(now.title(command));
    item->setEnabled(now.isEnabled(command));
    item->setVisible(now.isVisible(command));
    // Of a group, whichever is checked unchecks the others.
    if (now.isChecked(command)) item->setChecked(true);
  }
}

void CropMenuBar::perform(CropCommand command) {
  const CropWindowCommands now = commands();
  if (now.isEnabled(command)) {
    switch (command) {
      case CropCommand::newWindow:
        Q_EMIT newWindowRequested();
        break;
      case CropCommand::newTab:
        Q_EMIT newTabRequested();
        break;
      case CropCommand::save:
        activeReview()->save();
        break;
      case CropCommand::closeWindow:
        Q_EMIT closeRequested();
        break;
      case CropCommand::quit:
        Q_EMIT quitRequested();
        break;
      default:
        now.perform(command);
    }
  }
  updateCommands();
}

void CropMenuBar::followFocus() {
  QWidget* const focused = window()->focusWidget();
  auto* const field = qobject_cast<QLineEdit*>(focused);
  // An open menu gives the focus back.
  if (focused == this || field == m_field) return;
  if (m_field) m_field->removeEventFilter(this);
  m_field = field;
  if (field) field->installEventFilter(this);
}

bool CropMenuBar::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    // The key is looked up next, and what it finds may have changed since the last turn.
    updateCommands();
    const auto* key = static_cast<QKeyEvent*>(event);
    if (watched == m_field && isKeyOfCommand(*key)) {
      event->ignore();
      return true;
    }
  }
  return QMenuBar::eventFilter(watched, event);
}

bool CropMenuBar::isKeyOfCommand(const QKeyEvent& event) const {
  const QKeySequence keys(event.keyCombination());
  return std::ranges::any_of(m_actions, [&](const QAction* action) {
    return action->isEnabled() && action->shortcuts().contains(keys);
  });
}

}  // namespace vantrel
