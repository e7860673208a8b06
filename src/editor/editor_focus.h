#pragma once

#include <QHash>
#include <QPointer>
#include <QWidget>

namespace vantrel {

class EditorView;

/// Where the keyboard focus goes when a window shows one of its editors instead of another: back to
/// where it was in that one, and by itself to no field, which would begin to edit. Main thread.
class EditorFocus final {
 public:
  /// `window` outlives this.
  explicit EditorFocus(QWidget& window) : m_window(window) {}

  /// Ends what is typed in `editor`, which is shown until now, and keeps where the focus was. False
  /// when it is elsewhere in the window, where it then stays.
  bool leave(EditorView* editor);
  /// Gives the focus to `editor`, which is shown by now.
  void enter(EditorView* editor);
  void forget(EditorView* editor) { m_places.remove(editor); }

  /// From nowhere, the Tab key leads into the editor, and through it to the bars. True if it did.
  bool enterByKey(EditorView* editor) const;

 private:
  QWidget& m_window;
  QHash<EditorView*, QPointer<QWidget>> m_places;
};

}  // namespace vantrel
