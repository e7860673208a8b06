#include "editor/editor_view.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QShortcut>
#include <utility>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_appearance.h"
#include "canvas/crop_canvas.h"
#include "controls/file_dialog_layout.h"
#include "controls/open_dialog.h"
#include "controls/text_editing.h"
#include "editor/drop_highlight_view.h"
#include "editor/editor_offer.h"
#include "editor/editor_workspace.h"
#include "editor/empty_canvas_view.h"
#include "editor/error_alert.h"
#include "inspector/crop_export_footer.h"
#include "inspector/inspector_view.h"
#include "platform/gl/picture_surface.h"

namespace vantrel {
namespace {

/// Never a move, after which the other side would delete the file.
void acceptCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

}  // namespace

EditorView::EditorView(const QUuid& windowIdentity, ExportSession::Review review, QWidget* parent)
    : QWidget(parent),
      m_windowIdentity(windowIdentity),
      m_loader(m_state),
      m_exports(m_state, std::move(review)) {
  setAcceptDrops(true);
  buildLayout();
  watchState();
  watchErrors();
  updateChildren();
}

EditorView::~EditorView() {
  // Their fields end their editing while the history still stands.
  delete m_inspector;
  delete m_workspace;
}

EmptyCanvasView* EditorView::emptyView() const {
  return m_workspace->emptyView();
}

EditorWorkspace* EditorView::workspace() {
  makeTools();
  return m_workspace;
}

CanvasScrollView* EditorView::canvas() {
  return workspace()->canvas();
}

InspectorView* EditorView::inspector() {
  makeTools();
  return m_inspector;
}

CropWindowActions EditorView::windowActions() {
  CropWindowActions actions = actionsOn(m_state);
  actions.open = [this] { openMedia(); };
  actions.close = [this] { m_loader.closeMedia(); };
  actions.exportMedia = [this] { m_exports.exportMedia(); };
  return actions;
}

void EditorView::buildLayout() {
  m_workspace = new EditorWorkspace(this);
  m_dropHighlight = new DropHighlightView(this);
  // The canvas takes the key while it is enabled.
  m_exitPreview = new QShortcut(Qt::Key_Escape, this, [this] { m_state.setPreviewOnly(false); });

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_workspace, 1);

  connect(emptyView(), &EmptyCanvasView::openRequested, this, &EditorView::openMedia);
  connect(emptyView(), &EmptyCanvasView::sampleRequested, &m_loader,
          [this] { m_loader.loadSample(); });
  // A surface that comes later has the toolkit make the window anew.
  if (PictureSurface::isSupportKnown()) makeTools();
}

void EditorView::makeTools() {
  if (m_inspector) return;
  m_workspace->makeCanvas(m_state.history());
  m_inspector = new InspectorView(m_state.history(), m_state.exportState(),
                                  CropAppearance::exportAccent(), this);
  layout()->addWidget(m_inspector);
  connectTools();
  updateTools();
}

void EditorView::connectTools() {
  CanvasScrollView* const canvas = m_workspace->canvas();
  connect(canvas, &CanvasScrollView::zoomChanged, &m_state, &EditorState::setZoom);
  connect(canvas, &CanvasScrollView::cropChanged, &m_state, [this](const CropMargins& crop) {
    // In mid-drag the canvas learns later than the state that the file is closed.
    if (m_state.loaded()) m_state.history().setCrop(crop);
  });
  connect(canvas, &CanvasScrollView::fitRequested, &m_state, &EditorState::requestFit);
  connect(canvas, &CanvasScrollView::exitPreviewRequested, &m_state,
          [this] { m_state.setPreviewOnly(false); });
  connect(m_workspace, &EditorWorkspace::framingInsetsChanged, this, &EditorView::scheduleUpdate);
  connect(m_inspector, &InspectorView::canvasColorChanged, &m_state, &EditorState::setCanvasColor);
  connect(m_inspector, &InspectorView::exportRequested, &m_exports, &ExportSession::exportMedia);
  connect(m_inspector, &InspectorView::cancelRequested, &m_exports, &ExportSession::cancel);
  connect(&m_exports, &ExportSession::requested, m_inspector, [this] {
    m_inspector->footer()->begin();
    // Also where another window is the active one.
    endTextEditing(*window());
  });
}

void EditorView::watchState() {
  for (const auto changed : {&EditorState::fileChanged, &EditorState::busyChanged,
                             &EditorState::cameraChanged, &EditorState::appearanceChanged}) {
    connect(&m_state, changed, this, &EditorView::scheduleUpdate);
  }
  for (const auto changed : {&EditHistory::cropChanged, &EditHistory::encodingChanged,
                             &EditHistory::imageEncodingChanged, &EditHistory::revisionChanged}) {
    connect(&m_state.history(), changed, this, &EditorView::scheduleUpdate);
  }
}

void EditorView::watchErrors() {
  auto* const open = new ErrorAlert(tr("Could Not Open File"), this);
  connect(&m_state, &EditorState::openErrorChanged, open,
          [this, open] { open->setMessage(m_state.openError()); });
  connect(open, &ErrorAlert::dismissed, &m_state, [this] { m_state.setOpenError({}); });
  auto* const failedExport = new ErrorAlert(tr("Could Not Export File"), this);
  connect(&m_state, &EditorState::exportErrorChanged, failedExport,
          [this, failedExport] { failedExport->setMessage(m_state.exportError()); });
  connect(failedExport, &ErrorAlert::dismissed, &m_state, [this] { m_state.setExportError({}); });
}

void EditorView::scheduleUpdate() {
  if (std::exchange(m_updateScheduled, true)) return;
  QMetaObject::invokeMethod(this, &EditorView::updateChildren, Qt::QueuedConnection);
}

void EditorView::updateChildren() {
  m_updateScheduled = false;
  if (m_inspector) {
    updateTools();
  } else if (m_state.loaded() || m_state.busy()) {
    makeTools();
  }
  updateEmptyView();
  m_dropHighlight->setVisible(m_state.dropTargeted());
  m_dropHighlight->raise();
  m_exitPreview->setEnabled(m_state.busy() && m_state.previewOnly());
  Q_EMIT updated();
}

void EditorView::updateTools() {
  m_workspace->setPlayer(m_state.player(), m_state.loaded() ? m_state.file()->duration : 0);
  updateCanvas();
  InspectorSource source = inspectorSourceOf(m_state);
  source.canvasColor = canvasColor();
  m_inspector->setSource(source);
  m_inspector->setVisible(m_state.loaded() && m_state.showInspector());
}

void EditorView::updateEmptyView() {
  // Hidden with the focus, a button would hand it on to a field.
  QWidget* const focused = emptyView()->focusWidget();
  if (m_state.loaded() && focused) focused->clearFocus();
  emptyView()->setVisible(!m_state.loaded());
  emptyView()->setEnabled(!m_state.busy());
}

void EditorView::updateCanvas() {
  // Ahead of the file, so that what takes its time does not come at once.
  if (m_state.busy()) canvas()->prepareSurface();
  const EditorState::Camera& camera = m_state.camera();
  CropCanvas shown;
  shown.player = m_state.player();
  if (m_state.isImage()) shown.image = m_state.file()->imageSource->image;
  shown.sourceSize = m_state.sourceSize();
  shown.crop = m_state.history().crop();
  shown.zoom = camera.zoom;
  shown.fit = camera.fit;
  shown.previewOnly = m_state.previewOnly();
  shown.cameraRequest = camera.request;
  shown.centerCameraOnRequest = camera.centerOnRequest;
  shown.framingInsets = m_workspace->framingInsets();
  shown.canvasColor = canvasColor();
  canvas()->update(shown);
  // Disabled, it leaves the space bar to the button of the empty view.
  canvas()->setEnabled(m_state.loaded() && !m_state.busy());
}

QColor EditorView::canvasColor() const {
  if (!m_state.loaded()) return palette().color(QPalette::Window);
  return m_state.canvasColor().value_or(CropAppearance::canvas(palette()));
}

void EditorView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) scheduleUpdate();
}

void EditorView::openMedia() {
  auto* dialog = new OpenDialog(this, tr("Open"), MediaLoader::openFilter());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  layOutFileDialog(*dialog);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) {
    m_loader.loadMedia(QFile::encodeName(file).toStdString());
  });
  dialog->open();
}

void EditorView::stop() {
  m_loader.cancel();
  m_exports.cancel();
  if (m_state.player()) m_state.player()->pause();
  disconnect(&m_state, &EditorState::openErrorChanged, nullptr, nullptr);
  disconnect(&m_state, &EditorState::exportErrorChanged, nullptr, nullptr);
}

void EditorView::dragEnterEvent(QDragEnterEvent* event) {
  if (!m_loader.acceptsMedia(*event->mimeData())) return;
  m_state.setDropTargeted(true);
  acceptCopy(*event);
}

void EditorView::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
  m_state.setDropTargeted(false);
}

void EditorView::dropEvent(QDropEvent* event) {
  m_state.setDropTargeted(false);
  if (m_loader.receiveMedia(*event->mimeData())) acceptCopy(*event);
}

}  // namespace vantrel
