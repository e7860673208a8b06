#include "editor/editor_ending.h"

#include <QApplication>
#include <QPointer>
#include <algorithm>

#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "review/review_window.h"

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

void deleteAllWindows() {
  QList<QPointer<QWidget>> widgets;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    for (EditorView* editor : widget->findChildren<EditorView*>())
      editor->stop();
    auto* const editor = qobject_cast<EditorView*>(widget);
    if (editor) editor->stop();
    const bool isWindow =
        qobject_cast<EditorWindow*>(widget) || qobject_cast<ReviewWindow*>(widget);
    if (editor || isWindow) widgets << widget;
  }
  for (const QPointer<QWidget>& widget : widgets)
    delete widget.data();
}

}  // namespace vantrel
