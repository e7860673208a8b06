#include "editor/bring_to_front.h"

#include "editor/editor_view.h"
#include "editor/editor_window.h"

namespace vantrel {

void bringToFront(QWidget& target) {
  QWidget& window = *target.window();
  auto* const tabs = qobject_cast<EditorWindow*>(&window);
  auto* const editor = qobject_cast<EditorView*>(&target);
  if (tabs && editor) tabs->selectEditor(editor);
  window.setWindowState(window.windowState().setFlag(Qt::WindowMinimized, false));
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace vantrel
