#include "editor/editor_tool_bar.h"

#include <QAction>
#include <QEvent>
#include <QKeySequence>

#include "canvas/crop_zoom_stops.h"
#include "controls/symbol_icon.h"
#include "editor/crop_menu_bar.h"
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

EditorToolBar::EditorToolBar(const CropMenuBar& menus, QWidget* parent)
    : QToolBar(parent), m_menus(menus) {
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
  addAction(m_menus.openAction());
  m_menus.openAction()->setToolTip(withKey(tr("Open an image or video"), m_menus.openAction()));
  m_undo = addAction(tr("Undo"), this, [this] { m_state->undoEdit(); });
  m_undo->setToolTip(withKey(tr("Undo"), m_menus.undoAction()));
  m_redo = addAction(tr("Redo"), this, [this] { m_state->redoEdit(); });
  m_redo->setToolTip(withKey(tr("Redo"), m_menus.redoAction()));
}

void EditorToolBar::buildViewing() {
  addAction(m_menus.previewAction());
  m_menus.previewAction()->setToolTip(withKey(tr("Preview the crop"), m_menus.previewAction()));
  addGap();
  m_zoom = new ZoomControls(CropZoomStops::kMinimum, CropZoomStops::kMaximum, this);
  m_zoom->setAccessibleName(tr("Zoom"));
  m_zoom->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  addWidget(m_zoom);
  addGap();
  addAction(m_menus.inspectorAction());
  m_menus.inspectorAction()->setIconText(tr("Inspector"));
  m_menus.inspectorAction()->setToolTip(
      withKey(tr("Show or hide the inspector"), m_menus.inspectorAction()));

  connect(m_zoom, &ZoomControls::zoomChosen, this,
          [this](double zoom) { m_state->setZoom(zoom, false); });
  connect(m_zoom, &ZoomControls::stepRequested, this,
          [this](bool increasing) { m_state->requestZoomStep(increasing); });
  connect(m_zoom, &ZoomControls::actualSizeRequested, this,
          [this] { m_state->requestActualSize(); });
  connect(m_zoom, &ZoomControls::fitRequested, this, [this] { m_state->requestFit(); });
}

void EditorToolBar::addGap() {
  auto* const gap = new QWidget(this);
  gap->setFixedWidth(kGap);
  addWidget(gap);
}

void EditorToolBar::setState(EditorState* state) {
  m_state = state;
  updateState();
}

void EditorToolBar::updateState() {
  const bool isIdle = m_state && !m_state->busy();
  m_undo->setEnabled(isIdle && m_state->history().canUndo());
  m_redo->setEnabled(isIdle && m_state->history().canRedo());
  m_zoom->setEnabled(isIdle && m_state->loaded());
  if (m_state) m_zoom->setZoom(m_state->camera().zoom);
  const bool previewing = m_state && m_state->previewOnly();
  m_menus.previewAction()->setIcon(
      symbolIcon(previewing ? QStringLiteral("eye-off") : QStringLiteral("eye"), palette()));
}

void EditorToolBar::updateIcons() {
  m_menus.openAction()->setIcon(symbolIcon(QStringLiteral("folder-open"), palette()));
  m_undo->setIcon(symbolIcon(QStringLiteral("undo-2"), palette()));
  m_redo->setIcon(symbolIcon(QStringLiteral("redo-2"), palette()));
  m_menus.inspectorAction()->setIcon(symbolIcon(QStringLiteral("panel-right"), palette()));
}

void EditorToolBar::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || !m_zoom) return;
  updateIcons();
  updateState();
}

}  // namespace vantrel
