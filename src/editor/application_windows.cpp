#include "editor/application_windows.h"

#include <QApplication>
#include <QFile>
#include <QFileOpenEvent>
#include <QMenu>
#include <memory>
#include <tuple>
#include <utility>

#include "canvas/canvas_scroll_view.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "export/export_temporary_storage.h"
#include "review/review_window.h"

namespace vantrel {
namespace {

template <class Window>
QList<Window*> openWindows() {
  QList<Window*> windows;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* window = qobject_cast<Window*>(widget);
    if (window && window->isVisible()) windows << window;
  }
  return windows;
}

}  // namespace

ApplicationWindows::ApplicationWindows(QObject* parent) : QObject(parent) {
  qApp->installEventFilter(this);
}

EditorWindow* ApplicationWindows::openEditor() {
  return openEditor(Content::none);
}

EditorWindow* ApplicationWindows::openEditor(Content content) {
  // What a crashed process left behind goes before the first export.
  std::ignore = ExportTemporaryStorage::shared();
  auto* window =
      new EditorWindow([this](FinishedExport finished) { openReview(std::move(finished)); });
  connect(window, &EditorWindow::newWindowRequested, this, [this] { openEditor(); });
  connect(window, &EditorWindow::quitRequested, this, &ApplicationWindows::quit);
  m_notices.watch(window->view()->exports(), *window->view());
  m_taskBar.watch(window->view()->state().exportState());
  if (content == Content::picture) window->view()->canvas()->prepareSurface();
  window->show();
  return window;
}

EditorWindow* ApplicationWindows::openFile(const std::filesystem::path& path) {
  EditorWindow* target = nullptr;
  for (EditorWindow* window : openWindows<EditorWindow>()) {
    if (window->view()->state().acceptsIncomingFiles()) target = window;
  }
  if (!target) target = openEditor(Content::picture);
  target->view()->loader().loadMedia(path);
  return target;
}

ReviewWindow* ApplicationWindows::openReview(FinishedExport finished) {
  auto* window = new ReviewWindow(std::make_unique<ExportReviewDocument>(std::move(finished)));
  window->fileMenu()->addSeparator();
  QAction* quitAction = window->fileMenu()->addAction(
      tr("Quit"), QKeySequence(Qt::CTRL | Qt::Key_Q), this, &ApplicationWindows::quit);
  quitAction->setMenuRole(QAction::QuitRole);
  connect(&window->document(), &ExportReviewDocument::closed, this,
          &ApplicationWindows::continueQuitting, Qt::QueuedConnection);
  connect(window, &ReviewWindow::closeRefused, this, [this] { m_quitting = false; });
  m_notices.setReview(*window);
  window->show();
  return window;
}

void ApplicationWindows::quit() {
  m_quitting = true;
  continueQuitting();
}

void ApplicationWindows::continueQuitting() {
  if (!m_quitting) return;
  for (ReviewWindow* window : openWindows<ReviewWindow>()) {
    if (!window->document().isUnsaved() && !window->document().isSaving()) continue;
    window->raise();
    window->activateWindow();
    window->close();
    return;
  }
  QApplication::quit();
}

bool ApplicationWindows::eventFilter(QObject* watched, QEvent* event) {
  if (watched != qApp) return false;
  if (event->type() == QEvent::Quit && !m_quitting) {
    quit();
    return true;
  }
  if (event->type() != QEvent::FileOpen) return false;
  const auto* open = static_cast<QFileOpenEvent*>(event);
  if (!open->url().isLocalFile()) return false;
  openFile(QFile::encodeName(open->file()).toStdString());
  return true;
}

}  // namespace vantrel
