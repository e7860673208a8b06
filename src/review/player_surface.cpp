#include "review/player_surface.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <utility>

#include "platform/movie/video_picture.h"
#include "review/fitted_rect.h"

namespace vantrel {

PlayerSurface::PlayerSurface(QWidget* parent) : QOpenGLWidget(parent) {
  // No framebuffer can be empty.
  setMinimumSize(1, 1);
  connect(&m_renderer, &PictureRenderer::pictureImproved, this, qOverload<>(&QWidget::update));
}

PlayerSurface::~PlayerSurface() {
  // The context goes after this part of the view.
  if (context()) disconnect(context(), nullptr, this, nullptr);
  releaseContext();
}

void PlayerSurface::setSource(VideoPictureSource* source) {
  if (m_source) disconnect(m_source, nullptr, this, nullptr);
  m_source = source;
  if (!source) return;
  connect(source, &VideoPictureSource::pictureChanged, this, &PlayerSurface::takePicture);
  takePicture();
}

void PlayerSurface::takePicture() {
  auto picture = m_source->picture();
  m_pictureSize = {};
  if (picture) {
    const PictureSize size = picture->displayedSize();
    m_pictureSize = {size.width, size.height};
  }
  m_renderer.setVideoPicture(std::move(picture));
  update();
}

void PlayerSurface::initializeGL() {
  // The context goes when the view moves to another window, and comes anew there.
  connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &PlayerSurface::releaseContext,
          Qt::UniqueConnection);
}

void PlayerSurface::releaseContext() {
  if (!isValid()) return;
  makeCurrent();
  m_renderer.release();
  doneCurrent();
}

PictureView PlayerSurface::pictureView() const {
  PictureView view;
  view.target = size() * devicePixelRatioF();
  view.frame = fittedRect(m_pictureSize, view.target);
  view.frame.moveTopLeft(view.frame.topLeft().toPoint());
  view.retained = QRectF(QPointF(0, 0), view.target);
  return view;
}

void PlayerSurface::paintGL() {
  QOpenGLFunctions* const gl = context()->functions();
  gl->glClearColor(0, 0, 0, 1);
  gl->glClear(GL_COLOR_BUFFER_BIT);
  const PictureView view = pictureView();
  if (!view.frame.isEmpty()) m_renderer.draw(view);
}

}  // namespace vantrel

#include "moc_player_surface.cpp"
