#include "editor/editor_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QScreen>
#include <utility>

#include "controls/window_title.h"
#include "editor/crop_menu_bar.h"
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
    : QMainWindow(parent), m_view(new EditorView(QUuid::createUuid(), std::move(review), this)) {
  setAttribute(Qt::WA_DeleteOnClose);
  setContextMenuPolicy(Qt::NoContextMenu);
  setMinimumSize(kMinimumSize);
  resize(kIdealSize.boundedTo(screen()->availableSize()));
  m_menuBar = new CropMenuBar(this);
  setMenuBar(m_menuBar);
  m_toolBar = new EditorToolBar(*m_menuBar, this);
  addToolBar(m_toolBar);
  setCentralWidget(m_view);
  m_menuBar->setEditor(m_view);
  m_toolBar->setState(&m_view->state());
  connect(m_menuBar, &CropMenuBar::closeRequested, this, &QWidget::close);
  connect(m_view, &EditorView::updated, this, &EditorWindow::updateWindow);
  updateWindow();
}

EditorWindow::~EditorWindow() {
  // The focus moves while the children go; there is nobody left to follow it.
  disconnect(qApp, nullptr, m_menuBar, nullptr);
}

void EditorWindow::updateWindow() {
  const EditorState& state = m_view->state();
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
