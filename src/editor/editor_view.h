#pragma once

#include <QUuid>
#include <QWidget>

#include "editor/crop_window_actions.h"
#include "editor/editor_state.h"
#include "editor/export_session.h"
#include "editor/media_loader.h"

class QShortcut;

namespace vantrel {

class CanvasScrollView;
class DropHighlightView;
class EditorWorkspace;
class EmptyCanvasView;
class InspectorView;

/// The content of one editor window: it owns the state of one open file with its loading and
/// export, and arranges canvas, inspector and what stands there without a file. Changes are
/// collected and shown together, once for each turn of the event loop.
class EditorView final : public QWidget {
  Q_OBJECT

 public:
  EditorView(const QUuid& windowIdentity, ExportSession::Review review, QWidget* parent = nullptr);
  ~EditorView() override;

  /// Of this editor, for as long as it lives.
  [[nodiscard]] const QUuid& windowIdentity() const { return m_windowIdentity; }
  [[nodiscard]] EditorState& state() { return m_state; }
  [[nodiscard]] MediaLoader& loader() { return m_loader; }
  [[nodiscard]] ExportSession& exports() { return m_exports; }
  [[nodiscard]] EmptyCanvasView* emptyView() const;
  // What only a file needs is made when it is first asked for, and with the first file.
  [[nodiscard]] EditorWorkspace* workspace();
  [[nodiscard]] CanvasScrollView* canvas();
  [[nodiscard]] InspectorView* inspector();

  /// What it offers to the menus at this moment; the actions do as long as the view lives.
  [[nodiscard]] CropWindowActions windowActions();

  /// Asks for a file and loads it.
  void openMedia();
  /// Before its end: cancels what runs, and says nothing more. What runs ends later, when the state
  /// is no longer busy.
  void stop();

 Q_SIGNALS:
  /// What the view shows has changed; whoever shows the state elsewhere follows.
  void updated();

 protected:
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void buildLayout();
  void makeTools();
  void connectTools();
  void watchState();
  void watchErrors();
  void scheduleUpdate();
  void updateChildren();
  void updateTools();
  void updateEmptyView();
  void updateCanvas();
  [[nodiscard]] QColor canvasColor() const;

  const QUuid m_windowIdentity;
  EditorState m_state;
  MediaLoader m_loader;
  ExportSession m_exports;
  EditorWorkspace* m_workspace = nullptr;
  /// Made together with the canvas.
  InspectorView* m_inspector = nullptr;
  DropHighlightView* m_dropHighlight = nullptr;
  QShortcut* m_exitPreview = nullptr;
  bool m_updateScheduled = false;
};

}  // namespace vantrel
