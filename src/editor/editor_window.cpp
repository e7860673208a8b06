#include "editor/editor_window.h"

#include <QAbstractButton>
#include <QActionGroup>
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <utility>

#include "controls/text_editing.h"
#include "controls/window_title.h"
#include "editor/editor_tool_bar.h"
#include "editor/editor_view.h"
#include "platform/desktop/file_error.h"

namespace vantrel {
namespace {

// Points.
constexpr QSize kMinimumSize{900, 600};
constexpr QSize kIdealSize{1280, 800};

}  // namespace

EditorWindow::EditorWindow(ExportSession::Review review, QWidget* parent)
    : QMainWindow(parent), m_view(new EditorView(std::move(review), this)) {
  setAttribute(Qt::WA_DeleteOnClose);
  setContextMenuPolicy(Qt::NoContextMenu);
  setMinimumSize(kMinimumSize);
  resize(kIdealSize.boundedTo(screen()->availableSize()));
  buildFileMenu();
  buildEditMenu();
  buildViewMenu();
  buildCropMenu();
  m_toolBar =
      new EditorToolBar(m_view->state(), {m_open, m_undo, m_redo, m_preview, m_inspector}, this);
  addToolBar(m_toolBar);
  setCentralWidget(m_view);
  connect(m_view, &EditorView::updated, this, &EditorWindow::updateActions);
  connect(qApp, &QApplication::focusChanged, this, &EditorWindow::updateActions);
  updateActions();
}

EditorWindow::~EditorWindow() {
  // The focus moves while the children go; there is nobody left to follow it.
  disconnect(qApp, nullptr, this, nullptr);
}

void EditorWindow::buildFileMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&File"));
  menu->addAction(tr("New Window"), QKeySequence(Qt::CTRL | Qt::Key_N), this,
                  &EditorWindow::newWindowRequested);
  menu->addSeparator();
  m_open = menu->addAction(tr("Open…"), QKeySequence(Qt::CTRL | Qt::Key_O), m_view,
                           &EditorView::openMedia);
  m_closeFile = menu->addAction(tr("Close File"), QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_W),
                                &m_view->loader(), &MediaLoader::closeMedia);
  menu->addAction(tr("Close Window"), QKeySequence(Qt::CTRL | Qt::Key_W), this, &QWidget::close);
  menu->addSeparator();
  m_export = menu->addAction(tr("Export Crop…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E),
                             &m_view->exports(), &ExportSession::exportMedia);
  menu->addSeparator();
  QAction* quit = menu->addAction(tr("Quit"), QKeySequence(Qt::CTRL | Qt::Key_Q), this,
                                  &EditorWindow::quitRequested);
  quit->setMenuRole(QAction::QuitRole);
}

void EditorWindow::buildEditMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&Edit"));
  m_undo = menu->addAction(tr("Undo"), QKeySequence(Qt::CTRL | Qt::Key_Z), &m_view->state(),
                           &EditorState::undoEdit);
  m_redo = menu->addAction(tr("Redo"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z),
                           &m_view->state(), &EditorState::redoEdit);
}

void EditorWindow::buildViewMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&View"));
  EditorState* const state = &m_view->state();
  m_viewing = new QActionGroup(this);
  QAction* larger =
      menu->addAction(tr("Zoom In"), state, [state] { state->requestZoomStep(true); });
  // On many keyboards the plus sign is the upper half of the equals key.
  larger->setShortcuts({Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal});
  m_viewing->addAction(larger);
  m_viewing->addAction(menu->addAction(tr("Zoom Out"), Qt::CTRL | Qt::Key_Minus, state,
                                       [state] { state->requestZoomStep(false); }));
  m_viewing->addAction(
      menu->addAction(tr("Zoom to Fit"), Qt::CTRL | Qt::Key_0, state, &EditorState::requestFit));
  m_viewing->addAction(menu->addAction(tr("Actual Size"), Qt::CTRL | Qt::Key_1, state,
                                       &EditorState::requestActualSize));
  menu->addSeparator();
  m_inspector = menu->addAction(tr("Show Inspector"), Qt::CTRL | Qt::ALT | Qt::Key_I, state,
                                &EditorState::toggleInspector);
  m_viewing->addAction(m_inspector);
}

void EditorWindow::buildCropMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&Crop"));
  EditorState* const state = &m_view->state();
  m_preview = menu->addAction(tr("Preview Crop"), Qt::CTRL | Qt::Key_P, state,
                              [state] { state->setPreviewOnly(!state->previewOnly()); });
  m_viewing->addAction(m_preview);
}

void EditorWindow::updateActions() {
  const EditorState& state = m_view->state();
  const EditHistory& history = state.history();
  const bool canEdit = state.loaded() && !state.busy();
  m_open->setEnabled(!state.busy());
  m_closeFile->setEnabled(canEdit);
  m_export->setEnabled(state.canExport());
  m_undo->setEnabled(canEdit && (history.canUndo() || isEditingText()));
  m_redo->setEnabled(canEdit && (history.canRedo() || isEditingText()));
  m_viewing->setEnabled(canEdit);
  m_preview->setText(state.previewOnly() ? tr("Exit Preview") : tr("Preview Crop"));
  m_inspector->setText(state.showInspector() ? tr("Hide Inspector") : tr("Show Inspector"));
  m_toolBar->updateState();
  setWindowTitle(state.loaded() ? windowTitleOf(displayName(state.file()->path))
                                : QCoreApplication::applicationName());
}

bool EditorWindow::event(QEvent* event) {
  // A window in which nothing has the focus would give it to its first field, and so begin to edit.
  if (event->type() == QEvent::WindowActivate && m_view->state().loaded() && !focusWidget()) {
    setFocus(Qt::ActiveWindowFocusReason);
  }
  return QMainWindow::event(event);
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

}  // namespace vantrel
