#include "editor/editor_tool_bar.h"

#include <QAction>
#include <QEvent>
#include <QWidget>
#include <algorithm>

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
constexpr int kLeastPadding = 14;
constexpr int kGap = 8;

}  // namespace

EditorToolBar::EditorToolBar(CropMenuBar& menus, QWidget* parent)
    : QToolBar(parent), m_menus(menus) {
  setWindowTitle(tr("Tools"));
  setMovable(false);
  setToolButtonStyle(Qt::ToolButtonIconOnly);
  addGap(0);
  buildEditing();
  auto* const stretch = new QWidget(this);
  stretch->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  addWidget(stretch);
  buildViewing();
  addGap(0);
  updateHeight();
  updateIcons();
  updateState();
}

void EditorToolBar::buildEditing() {
  m_open = addCommand(CropCommand::open, tr("Open an image or video"));
  m_open->setText(tr("Open…"));
  m_undo = addCommand(CropCommand::undo, tr("Undo"));
  m_undo->setText(tr("Undo"));
  m_redo = addCommand(CropCommand::redo, tr("Redo"));
  m_redo->setText(tr("Redo"));
}

void EditorToolBar::buildViewing() {
  m_preview = addCommand(CropCommand::preview, tr("Preview the crop"));
  m_preview->setObjectName(QStringLiteral("preview"));
  addGap(kGap);
  m_zoom = new ZoomControls(CropZoomStops::kMinimum, CropZoomStops::kMaximum, this);
  m_zoom->setAccessibleName(tr("Zoom"));
  m_zoom->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  QAction* const zoomAction = addWidget(m_zoom);
  zoomAction->setObjectName(QStringLiteral("zoom"));
  zoomAction->setText(tr("Zoom"));
  addGap(kGap);
  m_inspector = addCommand(CropCommand::inspector, tr("Show or hide the inspector"));
  m_inspector->setText(tr("Inspector"));

  connect(m_zoom, &ZoomControls::zoomChosen, this,
          [this](double zoom) { m_state->setZoom(zoom, false); });
  connect(m_zoom, &ZoomControls::stepRequested, this,
          [this](bool increasing) { m_state->requestZoomStep(increasing); });
  connect(m_zoom, &ZoomControls::actualSizeRequested, this,
          [this] { m_state->requestActualSize(); });
  connect(m_zoom, &ZoomControls::fitRequested, this, [this] { m_state->requestFit(); });
}

QAction* EditorToolBar::addCommand(CropCommand command, const QString& help) {
  QAction* const action = addAction(QString(), this, [this, command] { m_menus.perform(command); });
  const QString keys = keyText(m_menus.action(command)->shortcut());
  action->setToolTip(QStringLiteral("%1 (%2)").arg(help, keys));
  // The toolkit keeps the buttons of a tool bar from the keyboard.
  widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
  return action;
}

// Besides the room that a style leaves around it.
void EditorToolBar::addGap(int width) {
  auto* const gap = new QWidget(this);
  gap->setFixedWidth(width);
  addWidget(gap);
}

void EditorToolBar::setState(EditorState* state) {
  m_state = state;
  updateState();
}

void EditorToolBar::updateState() {
  const bool isIdle = m_state && !m_state->busy();
  const bool canLook = isIdle && m_state->loaded();
  const bool previewing = m_state && m_state->previewOnly();
  m_open->setEnabled(isIdle);
  m_undo->setEnabled(isIdle && m_state->history().canUndo());
  m_redo->setEnabled(isIdle && m_state->history().canRedo());
  m_preview->setEnabled(canLook);
  m_preview->setText(previewing ? tr("Exit Preview") : tr("Preview Crop"));
  m_preview->setIcon(
      symbolIcon(previewing ? QStringLiteral("eye-off") : QStringLiteral("eye"), palette()));
  m_zoom->setEnabled(canLook);
  if (m_state) m_zoom->setZoom(m_state->camera().zoom);
  m_inspector->setEnabled(canLook);
}

void EditorToolBar::updateHeight() {
  setFixedHeight(std::max(kHeight, fontMetrics().height() + 2 * kLeastPadding));
}

void EditorToolBar::updateIcons() {
  m_open->setIcon(symbolIcon(QStringLiteral("folder-open"), palette()));
  m_undo->setIcon(symbolIcon(QStringLiteral("undo-2"), palette()));
  m_redo->setIcon(symbolIcon(QStringLiteral("redo-2"), palette()));
  m_inspector->setIcon(symbolIcon(QStringLiteral("panel-right"), palette()));
}

void EditorToolBar::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  if (!m_inspector) return;
  if (event->type() == QEvent::FontChange) updateHeight();
  if (event->type() != QEvent::PaletteChange) return;
  updateIcons();
  updateState();
}

}  // namespace vantrel
