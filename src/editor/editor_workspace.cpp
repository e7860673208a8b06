#include "editor/editor_workspace.h"

#include <QEvent>
#include <QVBoxLayout>
#include <cmath>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_workspace_layout.h"
#include "controls/crop_panel.h"
#include "editor/empty_canvas_view.h"
#include "playback/playback_controls.h"

namespace vantrel {
namespace {

// What a picture keeps free of the edges where no bar floats, in points.
constexpr QMarginsF kFramingInsets{20, 20, 20, 20};

}  // namespace

EditorWorkspace::EditorWorkspace(QWidget* parent)
    : QWidget(parent), m_empty(new EmptyCanvasView(this)) {}

void EditorWorkspace::makeCanvas(EditHistory& history) {
  m_canvas = new CanvasScrollView(history, this, CanvasScrollView::Surface::withPicture);
  m_canvas->setGeometry(rect());
  m_canvas->lower();
  m_canvas->show();
  m_panel = new CropPanel(this);
  m_playback = new PlaybackControls(m_panel);
  auto* const layout = new QVBoxLayout(m_panel);
  layout->setContentsMargins({});
  layout->addWidget(m_playback);
  m_panel->hide();
  m_panel->installEventFilter(this);
}

QMarginsF EditorWorkspace::framingInsets() const {
  if (!m_hasPlayer) return kFramingInsets;
  return CropWorkspaceLayout{size(), m_playbackHeight}.framingInsets();
}

void EditorWorkspace::setPlayer(Player* player, double duration) {
  m_playback->setPlayer(player, duration);
  m_hasPlayer = player != nullptr;
  if (m_hasPlayer) placePlayback();
  m_panel->setVisible(m_hasPlayer);
}

void EditorWorkspace::placePlayback() {
  const int height = m_panel->sizeHint().height();
  const CropWorkspaceLayout layout{size(), static_cast<double>(height)};
  const int width = static_cast<int>(layout.playbackWidth());
  const QPointF center = layout.playbackCenter();
  m_panel->setGeometry(static_cast<int>(std::floor(center.x() - width / 2.0)),
                       static_cast<int>(std::floor(center.y() - height / 2.0)), width, height);
  if (height == m_playbackHeight) return;
  m_playbackHeight = height;
  Q_EMIT framingInsetsChanged();
}

void EditorWorkspace::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (m_canvas) m_canvas->setGeometry(rect());
  m_empty->setGeometry(rect());
  if (m_hasPlayer) placePlayback();
}

bool EditorWorkspace::eventFilter(QObject* watched, QEvent* event) {
  // What the bar holds has changed its size.
  if (event->type() == QEvent::LayoutRequest && m_hasPlayer) placePlayback();
  return QWidget::eventFilter(watched, event);
}

}  // namespace vantrel
