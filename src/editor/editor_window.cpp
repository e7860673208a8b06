#include "editor/editor_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QStackedWidget>
#include <QToolButton>
#include <algorithm>
#include <functional>
#include <utility>

#include "controls/text_editing.h"
#include "controls/window_title.h"
#include "editor/crop_menu_bar.h"
#include "editor/editor_ending.h"
#include "editor/editor_tab_bar.h"
#include "editor/editor_tab_row.h"
#include "editor/editor_tool_bar.h"
#include "editor/editor_view.h"
#include "editor/tab_keys.h"
#include "platform/desktop/file_error.h"

namespace vantrel {
namespace {

// Points.
constexpr QSize kMinimumSize{900, 600};
constexpr QSize kIdealSize{1280, 800};

QString nameOf(EditorView& editor) {
  const EditorState& state = editor.state();
  return state.loaded() ? displayName(state.file()->path) : QCoreApplication::applicationName();
}

}  // namespace

EditorWindow::EditorWindow() {
  setAttribute(Qt::WA_DeleteOnClose);
  setContextMenuPolicy(Qt::NoContextMenu);
  setMinimumSize(kMinimumSize);
  resize(kIdealSize.boundedTo(screen()->availableSize()));
  setWindowTitle(QCoreApplication::applicationName());
}

EditorWindow::EditorWindow(EditorView* editor) : EditorWindow() {
  furnish(editor);
}

EditorWindow::EditorWindow(ExportSession::Review review)
    : EditorWindow(new EditorView(QUuid::createUuid(), std::move(review))) {}

EditorWindow::~EditorWindow() {
  m_closing = true;
  // The focus moves while the children go; there is nobody left to follow it.
  disconnect(qApp, nullptr, m_menuBar, nullptr);
  disconnect(m_tabs, nullptr, this, nullptr);
  m_menuBar->setEditor(nullptr);
  m_toolBar->setState(nullptr);
  for (EditorView* editor : std::exchange(m_editors, {})) {
    editor->stop();
    delete editor;
  }
}

void EditorWindow::furnish(EditorView* editor) {
  // In a window on the screen they would come a turn later, and slide to their places.
  setAnimated(false);
  buildBars();
  m_stack = new QStackedWidget(this);
  setCentralWidget(m_stack);
  watchTabs();
  addTabKeys(*this, *m_tabs);
  addEditor(editor);
  m_stack->show();
  m_toolBar->show();
  m_menuBar->show();
  setAnimated(true);
}

void EditorWindow::buildBars() {
  m_menuBar = new CropMenuBar(this);
  setMenuBar(m_menuBar);
  m_tabRow = new EditorTabRow(this);
  m_tabs = m_tabRow->tabs();
  addToolBar(m_tabRow);
  addToolBarBreak();
  m_toolBar = new EditorToolBar(*m_menuBar, this);
  addToolBar(m_toolBar);
  connect(m_menuBar, &CropMenuBar::closeRequested, this, &EditorWindow::closeCurrent);
  connect(m_menuBar, &CropMenuBar::newTabRequested, this, &EditorWindow::newTabRequested);
  connect(m_tabRow->newTabButton(), &QToolButton::clicked, this, &EditorWindow::newTabRequested);
}

void EditorWindow::watchTabs() {
  connect(m_tabs, &QTabBar::currentChanged, this, [this](int index) {
    if (index >= 0) showEditor(m_editors.at(index));
  });
  connect(m_tabs, &QTabBar::tabMoved, this, [this](int from, int to) { m_editors.move(from, to); });
  connect(m_tabs, &QTabBar::tabCloseRequested, this,
          [this](int index) { closeEditor(m_editors.value(index)); });
  connect(m_tabs, &EditorTabBar::closeOthersRequested, this, [this](int index) {
    EditorView* const kept = m_editors.value(index);
    for (EditorView* editor : QList(m_editors)) {
      if (editor != kept) closeEditor(editor);
    }
  });
  connect(m_tabs, &EditorTabBar::tornOff, this, [this](int index, const QPoint& globalPosition) {
    if (EditorView* const editor = m_editors.value(index))
      Q_EMIT tabTornOff(editor, globalPosition);
  });
  connect(m_tabs, &EditorTabBar::newWindowRequested, this, [this](int index) {
    if (EditorView* const editor = m_editors.value(index)) Q_EMIT tabTornOff(editor, {});
  });
}

void EditorWindow::addEditor(EditorView* editor) {
  insertEditor(m_tabs->currentIndex() + 1, editor);
}

void EditorWindow::insertEditor(int index, EditorView* editor) {
  if (auto* const other = qobject_cast<EditorWindow*>(editor->window())) other->takeEditor(editor);
  index = std::clamp<int>(index, 0, static_cast<int>(m_editors.size()));
  m_editors.insert(index, editor);
  m_stack->addWidget(editor);
  watchEditor(editor);
  m_tabs->insertTab(index, QString());
  m_tabs->setCurrentIndex(index);
  updateEditor(editor);
  updateTabRow();
}

void EditorWindow::watchEditor(EditorView* editor) {
  const auto follow = [this, editor] { updateEditor(editor); };
  connect(editor, &EditorView::updated, this, follow);
  connect(&editor->state().exportState(), &CropExportState::changed, this, follow);
  // Its alerts come over it, not over another.
  const auto show = [this, editor] { selectEditor(editor); };
  connect(&editor->state(), &EditorState::openErrorChanged, this, show);
  connect(&editor->state(), &EditorState::exportErrorChanged, this, show);
}

void EditorWindow::takeEditor(EditorView* editor) {
  const auto index = static_cast<int>(m_editors.indexOf(editor));
  if (index < 0) return;
  disconnect(editor, nullptr, this, nullptr);
  disconnect(&editor->state(), nullptr, this, nullptr);
  disconnect(&editor->state().exportState(), nullptr, this, nullptr);
  if (editor == m_view) m_focus.leave(editor);
  m_editors.removeAt(index);
  m_focus.forget(editor);
  if (m_editors.isEmpty()) showEditor(nullptr);
  m_tabs->removeTab(index);
  m_stack->removeWidget(editor);
  editor->hide();
  editor->setParent(nullptr);
  updateTabRow();
  if (m_editors.isEmpty()) close();
}

void EditorWindow::selectEditor(EditorView* editor) {
  m_tabs->setCurrentIndex(static_cast<int>(m_editors.indexOf(editor)));
}

void EditorWindow::closeEditor(EditorView* editor) {
  if (!m_editors.contains(editor)) return;
  if (m_editors.size() == 1) {
    close();
    return;
  }
  takeEditor(editor);
  deleteWhenStopped(editor, {editor});
}

void EditorWindow::closeCurrent() {
  closeEditor(m_view);
}

void EditorWindow::showEditor(EditorView* editor) {
  if (editor == m_view) return;
  const bool movesFocus = m_view && m_focus.leave(m_view);
  m_view = editor;
  m_menuBar->setEditor(editor);
  m_toolBar->setState(editor ? &editor->state() : nullptr);
  if (!editor) return;
  m_stack->setCurrentWidget(editor);
  updateEditor(editor);
  if (movesFocus) m_focus.enter(editor);
}

void EditorWindow::updateEditor(EditorView* editor) {
  const auto index = static_cast<int>(m_editors.indexOf(editor));
  m_tabs->setTabName(index, nameOf(*editor));
  m_tabs->setTabProgress(index, editor->state().exportState().progress());
  if (editor != m_view) return;
  m_toolBar->updateState();
  setWindowTitle(windowTitleOf(nameOf(*editor)));
}

void EditorWindow::updateTabRow() {
  m_tabRow->setVisible(m_editors.size() > 1);
  m_menuBar->setInTabs(m_editors.size() > 1);
}

std::optional<int> EditorWindow::tabPlaceAt(const QPoint& globalPosition) const {
  const QPoint position = mapFromGlobal(globalPosition);
  if (m_closing || position.y() >= m_toolBar->y() || !rect().contains(position)) return {};
  return m_tabs->insertionIndex(m_tabs->mapFromGlobal(globalPosition));
}

bool EditorWindow::event(QEvent* event) {
  // The release of the button goes to the dialog that comes.
  if (event->type() == QEvent::WindowBlocked) m_tabs->endDrag();
  // A window in which nothing has the focus would give it to its first field, and so begin to edit.
  if (event->type() == QEvent::WindowActivate && m_view && m_view->state().loaded() &&
      !focusWidget()) {
    setFocus(Qt::ActiveWindowFocusReason);
  }
  return QMainWindow::event(event);
}

bool EditorWindow::focusNextPrevChild(bool next) {
  if (next && m_view && m_focus.enterByKey(m_view)) return true;
  return QMainWindow::focusNextPrevChild(next);
}

void EditorWindow::keyPressEvent(QKeyEvent* event) {
  // The space bar belongs to the canvas, so another key presses the buttons.
  auto* const button = qobject_cast<QAbstractButton*>(focusWidget());
  const bool presses = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (button && presses && !event->isAutoRepeat()) {
    button->click();
  } else {
    QMainWindow::keyPressEvent(event);
  }
}

void EditorWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  m_closing = true;
  // What still runs is not waited for here.
  if (testAttribute(Qt::WA_DeleteOnClose)) {
    setAttribute(Qt::WA_DeleteOnClose, false);
    deleteWhenStopped(this, m_editors);
  }
}

}  // namespace vantrel
