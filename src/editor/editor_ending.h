#pragma once

#include <QList>

class QWidget;

namespace vantrel {

class EditorView;

/// Stops `editors`, and deletes `widget`, which is one of them or holds them, as soon as nothing
/// runs in them any more. Nobody waits for that; it is hidden by then, and has no parent. Main
/// thread.
void deleteWhenStopped(QWidget* widget, const QList<EditorView*>& editors);

/// Stops and deletes all editors and reviews, with their windows, and waits for what runs in them.
/// What is not saved is lost.
void deleteAllWindows();

}  // namespace vantrel
