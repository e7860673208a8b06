#include "editor/application_windows.h"

#include <QApplication>
#include <QFile>
#include <QFileOpenEvent>
#include <QScreen>
#include <QUuid>
#include <QWindow>
#include <memory>
#include <utility>

#include "canvas/canvas_scroll_view.h"
#include "editor/bring_to_front.h"
#include "editor/crop_menu_bar.h"
#include "editor/crop_window_registry.h"
#include "editor/editor_ending.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "editor/window_placement.h"
#include "platform/gl/picture_surface.h"
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

/// Where the window opens: at the point where a tab was let go, or a little beside `front`.
void placeBeside(const EditorWindow& front, EditorWindow& window,
                 const std::optional<QPoint>& globalPosition) {
  if (!front.isMaximized() && !front.isFullScreen()) window.resize(front.size());
  // One that has not come to the screen yet has no place there: the desktop finds one for both.
  if (!globalPosition && !front.windowHandle()->isExposed()) return;
  // It will have the same frame.
  const QSize size = window.size() + front.frameGeometry().size() - front.size();
  const QRect room = front.screen()->availableGeometry();
  window.move(globalPosition ? WindowPlacement::under(*globalPosition, size, room)
                             : WindowPlacement::cascaded(front.frameGeometry(), size, room));
}

}  // namespace

ApplicationWindows::ApplicationWindows(QObject* parent) : QObject(parent) {
  qApp->installEventFilter(this);
  // Before the session folder goes, which an export that runs writes to.
  connect(qApp, &QCoreApplication::aboutToQuit, this, &deleteAllWindows);
}

EditorWindow* ApplicationWindows::openEditor() {
  // A window that is to show OpenGL has to have it when it gets to the screen.
  if (PictureSurface::isSupportKnown()) return openEditorAs(QUuid::createUuid(), Content::none);
  auto* const window = new EditorWindow;
  showWindow(*window, {});
  window->furnish(makeEditor(QUuid::createUuid()));
  connectWindow(*window);
  return window;
}

EditorWindow* ApplicationWindows::openTab(EditorWindow* window) {
  const QUuid identity = QUuid::createUuid();
  CropWindowRegistry::shared().requestTab(identity, window);
  return openEditorAs(identity, Content::none);
}

EditorWindow* ApplicationWindows::openEditorAs(const QUuid& identity, Content content) {
  EditorView* const editor = makeEditor(identity);
  if (content == Content::picture) editor->canvas()->prepareSurface();
  if (CropWindowRegistry::shared().attach(editor)) {
    return qobject_cast<EditorWindow*>(editor->window());
  }
  return openWindow(editor, {});
}

EditorView* ApplicationWindows::makeEditor(const QUuid& identity) {
  auto* const editor = new EditorView(
      identity, [this](FinishedExport finished) { openReview(std::move(finished)); });
  m_notices.watch(editor->exports(), *editor);
  m_taskBar.watch(editor->state().exportState());
  return editor;
}

EditorWindow* ApplicationWindows::openWindow(EditorView* editor,
                                             const std::optional<QPoint>& globalPosition) {
  auto* const window = new EditorWindow(editor);
  connectWindow(*window);
  showWindow(*window, globalPosition);
  return window;
}

void ApplicationWindows::connectWindow(EditorWindow& window) {
  connectMenus(*window.commands());
  connect(&window, &EditorWindow::newTabRequested, this, [this, &window] { openTab(&window); });
  connect(&window, &EditorWindow::tabTornOff, this, &ApplicationWindows::moveTab);
}

void ApplicationWindows::showWindow(EditorWindow& window,
                                    const std::optional<QPoint>& globalPosition) {
  if (m_front && m_front->isVisible()) placeBeside(*m_front, window, globalPosition);
  m_front = &window;
  window.show();
}

void ApplicationWindows::moveTab(EditorView* editor, const std::optional<QPoint>& globalPosition) {
  auto* const source = qobject_cast<EditorWindow*>(editor->window());
  QWidget* const below = globalPosition ? QApplication::topLevelAt(*globalPosition) : nullptr;
  auto* const target = qobject_cast<EditorWindow*>(below);
  const auto place =
      target && target != source ? target->tabPlaceAt(*globalPosition) : std::nullopt;
  m_front = source;
  if (place) {
    target->insertEditor(*place, editor);
    bringToFront(*target);
  } else if (source->editors().size() > 1) {
    bringToFront(*openWindow(editor, globalPosition));
  }
}

EditorView* ApplicationWindows::idleEditor() const {
  QList<EditorWindow*> windows = openWindows<EditorWindow>();
  const auto front = windows.indexOf(m_front);
  if (front > 0) windows.move(front, 0);
  for (EditorWindow* window : windows) {
    QList<EditorView*> editors = window->editors();
    editors.move(editors.indexOf(window->view()), 0);
    for (EditorView* editor : editors) {
      if (editor->state().acceptsIncomingFiles()) return editor;
    }
  }
  return nullptr;
}

EditorWindow* ApplicationWindows::openFile(const std::filesystem::path& path) {
  EditorView* editor = idleEditor();
  EditorWindow* window = nullptr;
  if (editor) {
    window = qobject_cast<EditorWindow*>(editor->window());
    bringToFront(*editor);
  } else {
    window = openEditorAs(QUuid::createUuid(), Content::picture);
    editor = window->view();
  }
  editor->loader().loadMedia(path);
  return window;
}

ReviewWindow* ApplicationWindows::openReview(FinishedExport finished) {
  auto* window = new ReviewWindow(std::make_unique<ExportReviewDocument>(std::move(finished)));
  auto* menus = new CropMenuBar(window);
  window->setMenuBar(menus);
  connectMenus(*menus);
  connect(menus, &CropMenuBar::closeRequested, window, &QWidget::close);
  connect(&window->document(), &ExportReviewDocument::closed, this,
          &ApplicationWindows::continueQuitting, Qt::QueuedConnection);
  connect(window, &ReviewWindow::closeRefused, this, [this] { m_quitting = false; });
  m_notices.setReview(*window);
  window->show();
  return window;
}

void ApplicationWindows::connectMenus(CropMenuBar& menus) {
  CropWindowRegistry& registry = CropWindowRegistry::shared();
  menus.setFindReview([&registry] { return registry.activeReviewWindow(); });
  connect(&registry, &CropWindowRegistry::activeReviewChanged, &menus,
          &CropMenuBar::updateCommands);
  connect(&menus, &CropMenuBar::newWindowRequested, this, &ApplicationWindows::openEditor);
  connect(&menus, &CropMenuBar::quitRequested, this, &ApplicationWindows::quit);
}

void ApplicationWindows::quit() {
  m_quitting = true;
  continueQuitting();
}

void ApplicationWindows::continueQuitting() {
  if (!m_quitting) return;
  for (ReviewWindow* window : openWindows<ReviewWindow>()) {
    if (!window->document().isUnsaved() && !window->document().isSaving()) continue;
    bringToFront(*window);
    window->close();
    return;
  }
  m_ending = true;
  QApplication::quit();
  m_ending = m_quitting = false;
}

void ApplicationWindows::end() {
  m_quitting = false;
  QCoreApplication::exit();
}

bool ApplicationWindows::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::WindowActivate) {
    if (auto* const window = qobject_cast<EditorWindow*>(watched)) m_front = window;
  }
  if (watched != qApp) return false;
  if (event->type() == QEvent::Quit && !m_ending) {
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
