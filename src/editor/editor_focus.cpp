#include "editor/editor_focus.h"

#include "editor/editor_view.h"

namespace vantrel {

bool EditorFocus::leave(EditorView* editor) {
  QWidget* const focused = m_window.focusWidget();
  if (!focused || focused == &m_window) return true;
  if (!editor->isAncestorOf(focused)) return false;
  m_places[editor] = focused;
  focused->clearFocus();
  return true;
}

void EditorFocus::enter(EditorView* editor) {
  QWidget* const before = m_places.take(editor);
  QWidget* const target = before && before->isEnabled() && before->isVisible() ? before : &m_window;
  target->setFocus(Qt::OtherFocusReason);
}

bool EditorFocus::enterByKey(EditorView* editor) const {
  const QWidget* const focused = m_window.focusWidget();
  if (focused && focused != &m_window) return false;
  // What was made later comes later, maybe after that of other editors.
  for (QWidget* child = editor->nextInFocusChain(); child != editor;
       child = child->nextInFocusChain()) {
    const bool takesTab = (child->focusPolicy() & Qt::TabFocus) != 0;
    if (!takesTab || !editor->isAncestorOf(child) || !child->isVisible() || !child->isEnabled()) {
      continue;
    }
    child->setFocus(Qt::TabFocusReason);
    return true;
  }
  return false;
}

}  // namespace vantrel
