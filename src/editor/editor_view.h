#pragma once

#include <QWidget>
#include <functional>

#include "editor/editor_state.h"
#include "editor/export_session.h"
#include "editor/media_loader.h"

namespace vantrel {

class CanvasScrollView;
class DropHighlightView;
class EmptyCanvasView;
class InspectorView;

/// The content of one editor window: it owns the state of one open file with its loading and
/// export, and arranges canvas, inspector and what stands there without a file. Changes are
/// collected and shown together, once for each turn of the event loop.
class EditorView final : public QWidget {
  Q_OBJECT

 public:
  explicit EditorView(ExportSession::Review review, QWidget* parent = nullptr);
  ~EditorView() override;

  [[nodiscard]] EditorState& state() { return m_state; }
  [[nodiscard]] MediaLoader& loader() { return m_loader; }
  [[nodiscard]] ExportSession& exports() { return m_exports; }
  [[nodiscard]] CanvasScrollView* canvas() const { return m_canvas; }
  [[nodiscard]] InspectorView* inspector() const { return m_inspector; }
  [[nodiscard]] EmptyCanvasView* emptyView() const { return m_empty; }

  /// Asks for a file and loads it.
  void openMedia();

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
  void watchState();
  void scheduleUpdate();
  void updateChildren();
  void updateCanvas();
  [[nodiscard]] QColor canvasColor() const;
  void showOpenError();
  void showExportError();
  void showAlert(const QString& title, const QString& message, const std::function<void()>& clear);

  EditorState m_state;
  MediaLoader m_loader;
  ExportSession m_exports;
  CanvasScrollView* m_canvas = nullptr;
  EmptyCanvasView* m_empty = nullptr;
  InspectorView* m_inspector = nullptr;
  DropHighlightView* m_dropHighlight = nullptr;
  bool m_updateScheduled = false;
};

}  // namespace vantrel
