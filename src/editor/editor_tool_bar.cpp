#include "editor/editor_tool_bar.h"

#include <QAction>
#include <QEvent>
#include <QKeySequence>

#include "canvas/crop_zoom_stops.h"
#include "controls/symbol_icon.h"
#include "editor/editor_state.h"
#include "platform/desktop/key_names.h"
#include "playback/zoom_controls.h"

namespace vantrel {
namespace {

// Points.
constexpr int kHeight = 48;
constexpr int kGap = 16;

QString withKey(const QString& help, const QAction* action) {
  return QStringLiteral("%1 (%2)").arg(help, keyText(action->shortcut()));
}

}  // namespace

EditorToolBar::EditorToolBar(EditorState& state, const MenuActions& actions, QWidget* parent)
    : QToolBar(parent), m_state(state), m_actions(actions) {
  setWindowTitle(tr("Tools"));
  setMovable(false);
  setFixedHeight(kHeight);
  setToolButtonStyle(Qt::ToolButtonIconOnly);
  buildEditing();
  auto* const stretch = new QWidget(this);
  stretch->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  addWidget(stretch);
  buildViewing();
  updateIcons();
  updateState();
}

void EditorToolBar::buildEditing() {
  addAction(m_actions.open);
  m_actions.open->setToolTip(withKey(tr("Open an image or video"), m_actions.open));
  m_undo = addAction(tr("Undo"), &m_state, &EditorState::undoEdit);
  m_undo->setToolTip(withKey(tr("Undo"), m_actions.undo));
  m_redo = addAction(tr("Redo"), &m_state, &EditorState::redoEdit);
  m_redo->setToolTip(withKey(tr("Redo"), m_actions.redo));
}

void EditorToolBar::buildViewing() {
  addAction(m_actions.preview);
  m_actions.preview->setToolTip(withKey(tr("Preview the crop"), m_actions.preview));
  addGap();
  m_zoom = new ZoomControls(CropZoomStops::kMinimum, CropZoomStops::kMaximum, this);
  m_zoom->setAccessibleName(tr("Zoom"));
  m_zoom->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  addWidget(m_zoom);
  addGap();
  addAction(m_actions.inspector);
  m_actions.inspector->setIconText(tr("Inspector"));
  m_actions.inspector->setToolTip(withKey(tr("Show or hide the inspector"), m_actions.inspector));

  connect(m_zoom, &ZoomControls::zoomChosen, &m_state,
          [state = &m_state](double zoom) { state->setZoom(zoom, false); });
  connect(m_zoom, &ZoomControls::stepRequested, &m_state, &EditorState::requestZoomStep);
  connect(m_zoom, &ZoomControls::actualSizeRequested, &m_state, &EditorState::requestActualSize);
  connect(m_zoom, &ZoomControls::fitRequested, &m_state, &EditorState::requestFit);
}

void EditorToolBar::addGap() {
  auto* const gap = new QWidget(this);
  gap->setFixedWidth(kGap);
  addWidget(gap);
}

void EditorToolBar::updateState() {
  const EditHistory& history = m_state.history();
  m_undo->setEnabled(!m_state.busy() && history.canUndo());
  m_redo->setEnabled(!m_state.busy() && history.canRedo());
  m_zoom->setEnabled(m_state.loaded() && !m_state.busy());
  m_zoom->setZoom(m_state.camera().zoom);
  m_actions.preview->setIcon(symbolIcon(
      m_state.previewOnly() ? QStringLiteral("eye-off") : QStringLiteral("eye"), palette()));
}

void EditorToolBar::updateIcons() {
  m_actions.open->setIcon(symbolIcon(QStringLiteral("folder-open"), palette()));
  m_undo->setIcon(symbolIcon(QStringLiteral("undo-2"), palette()));
  m_redo->setIcon(symbolIcon(QStringLiteral("redo-2"), palette()));
  m_actions.inspector->setIcon(symbolIcon(QStringLiteral("panel-right"), palette()));
}

void EditorToolBar::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || !m_zoom) return;
  updateIcons();
  updateState();
}

}  // namespace vantrel
