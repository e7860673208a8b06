#include "editor/editor_ending.h"

#include <QApplication>
#include <QPointer>
#include <algorithm>

#include "editor/editor_view.h"
#include "editor/editor_window.h"

namespace vantrel {

void deleteWhenStopped(QWidget* widget, const QList<EditorView*>& editors) {
  for (EditorView* editor : editors)
    editor->stop();
  const auto deleteIfStopped = [widget, editors] {
    const auto isBusy = [](EditorView* editor) { return editor->state().busy(); };
    if (std::none_of(editors.begin(), editors.end(), isBusy)) widget->deleteLater();
  };
  for (EditorView* editor : editors)
    QObject::connect(&editor->state(), &EditorState::busyChanged, widget, deleteIfStopped);
  deleteIfStopped();
}

void deleteAllEditors() {
  QList<QPointer<QWidget>> widgets;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    for (EditorView* editor : widget->findChildren<EditorView*>())
      editor->stop();
    auto* const editor = qobject_cast<EditorView*>(widget);
    if (editor) editor->stop();
    if (editor || qobject_cast<EditorWindow*>(widget)) widgets << widget;
  }
  for (const QPointer<QWidget>& widget : widgets)
    delete widget.data();
}

}  // namespace vantrel
