#include "review/video_review_view.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QWindow>
#include <algorithm>

#include "playback/playback_state.h"
#include "review/export_information.h"
#include "review/export_review_document.h"
#include "review/player_surface.h"
#include "review/review_controls.h"

namespace vantrel {
namespace {

/// In points.
constexpr QSize kMinimumSize{300, 200};
constexpr int kInformationPadding = 12;
constexpr int kControlsSideDistance = 12, kControlsBottomDistance = 24;
constexpr int kNoticePadding = 40;

constexpr QColor kNoticeColor(0xa3, 0xa5, 0xad);

constexpr double kArrowSeconds = 1;
constexpr auto kKeysOfOthers =
    Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier | Qt::ShiftModifier;

bool isMovement(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TabletMove:
    case QEvent::TabletPress:
      return true;
    default:
      return false;
  }
}

}  // namespace

VideoReviewView::VideoReviewView(ExportReviewDocument& document, QWidget* parent)
    : QWidget(parent),
      m_document(document),
      m_surface(PlayerSurface::isSupported() ? new PlayerSurface(this) : nullptr),
      m_information(new ExportInformation(document.summary(), this)),
      m_controls(new ReviewControls(document.playback(), this)) {
  setMinimumSize(kMinimumSize);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(tr("Exported video"));
  QPalette black = palette();
  black.setColor(QPalette::Window, Qt::black);
  setPalette(black);
  setAutoFillBackground(true);
  if (!m_surface) showNotice();
  connectControls();
  document.openPlayer();
  followPlayer();
}

void VideoReviewView::showNotice() {
  m_notice = new QLabel(
      tr("The video cannot be shown, because this display has no OpenGL 3.2. Everything else "
         "works."),
      this);
  QPalette onBlack = palette();
  onBlack.setColor(QPalette::WindowText, kNoticeColor);
  m_notice->setPalette(onBlack);
  m_notice->setAlignment(Qt::AlignCenter);
  m_notice->setWordWrap(true);
  m_notice->setAttribute(Qt::WA_TransparentForMouseEvents);
  m_notice->lower();
}

void VideoReviewView::connectControls() {
  connect(&m_document.playback(), &PlaybackState::playerChanged, this,
          &VideoReviewView::followPlayer);
  QAction* const loop = m_controls->loopAction();
  connect(loop, &QAction::triggered, &m_document, &ExportReviewDocument::toggleLoop);
  connect(&m_document, &ExportReviewDocument::loopEnabledChanged, loop,
          [this, loop] { loop->setChecked(m_document.loopEnabled()); });
  connect(m_controls, &ReviewControls::fullScreenToggled, this, &VideoReviewView::toggleFullScreen);
  connect(m_controls, &ReviewControls::shownChanged, this, [this](bool shown) {
    if (shown) {
      unsetCursor();
    } else {
      setCursor(Qt::BlankCursor);
    }
  });
}

void VideoReviewView::followPlayer() {
  if (m_surface) m_surface->setSource(m_document.playback().player());
}

void VideoReviewView::resizeEvent(QResizeEvent* /*event*/) {
  if (m_surface) m_surface->setGeometry(rect());
  if (m_notice) {
    m_notice->setGeometry(rect().adjusted(kNoticePadding, 0, -kNoticePadding, 0));
  }
  const int room = std::max(0, width() - 2 * kInformationPadding);
  m_information->setGeometry({{kInformationPadding, kInformationPadding},
                              m_information->sizeHint().boundedTo({room, height()})});
  const int width = std::min(ReviewControls::kWidth, this->width() - 2 * kControlsSideDistance);
  m_controls->setGeometry((this->width() - width) / 2,
                          height() - kControlsBottomDistance - ReviewControls::kHeight, width,
                          ReviewControls::kHeight);
}

void VideoReviewView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // What moves anywhere in the window passes here before it reaches a widget.
  window()->windowHandle()->installEventFilter(this);
}

bool VideoReviewView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseMove) {
    const QPoint pointer = static_cast<QMouseEvent*>(event)->position().toPoint();
    m_controls->setUnderPointer(m_controls->geometry().contains(mapFrom(window(), pointer)));
  } else if (event->type() == QEvent::Leave) {
    m_controls->setUnderPointer(false);
  }
  if (isMovement(event->type())) m_controls->stir();
  return QWidget::eventFilter(watched, event);
}

void VideoReviewView::keyPressEvent(QKeyEvent* event) {
  if (event->modifiers() & kKeysOfOthers) {
    QWidget::keyPressEvent(event);
    return;
  }
  switch (event->key()) {
    case Qt::Key_Space:
      if (!event->isAutoRepeat()) m_document.playback().togglePlayback();
      return;
    case Qt::Key_Left:
      seekBy(-kArrowSeconds);
      return;
    case Qt::Key_Right:
      seekBy(kArrowSeconds);
      return;
    case Qt::Key_F:
    case Qt::Key_F11:
      if (!event->isAutoRepeat()) toggleFullScreen();
      return;
    case Qt::Key_Escape:
      if (!m_isFullScreen) break;
      Q_EMIT fullScreenRequested(false);
      return;
    default:
      break;
  }
  QWidget::keyPressEvent(event);
}

void VideoReviewView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) toggleFullScreen();
}

void VideoReviewView::seekBy(double seconds) {
  PlaybackState& playback = m_document.playback();
  if (playback.player()) playback.setSeekPosition(playback.seekPosition() + seconds);
}

void VideoReviewView::toggleFullScreen() {
  Q_EMIT fullScreenRequested(!m_isFullScreen);
}

void VideoReviewView::setFullScreen(bool isFullScreen) {
  m_isFullScreen = isFullScreen;
  m_controls->setFullScreen(isFullScreen);
}

}  // namespace vantrel
