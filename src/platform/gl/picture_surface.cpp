#include "platform/gl/picture_surface.h"

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <utility>

#include "platform/gl/surface_format.h"
#include "platform/movie/video_picture.h"

namespace vantrel {
namespace {

bool canDraw() {
  // The one platform that has contexts, but no windows that show what is drawn with them.
  if (QGuiApplication::platformName() == QLatin1String("offscreen")) return false;
  QOpenGLContext context;
  context.setFormat(pictureSurfaceFormat());
  if (!context.create() || context.isOpenGLES()) return false;
  QOffscreenSurface surface;
  surface.setFormat(context.format());
  surface.create();
  return context.format().version() >= pictureSurfaceFormat().version() &&
         context.makeCurrent(&surface);
}

}  // namespace

bool PictureSurface::isSupported() {
  if (!s_supported) s_supported = canDraw();
  return *s_supported;
}

bool PictureSurface::isSupportKnown() {
  return s_supported.has_value();
}

PictureSurface::PictureSurface(QWidget* parent) : QOpenGLWidget(parent) {
  // No framebuffer can be empty.
  setMinimumSize(1, 1);
  connect(&m_pictures, &PictureRenderer::pictureImproved, this, qOverload<>(&QWidget::update));
}

void PictureSurface::setPictureSource(VideoPictureSource* source) {
  if (m_source) disconnect(m_source, nullptr, this, nullptr);
  m_source = source;
  if (!source) return;
  connect(source, &VideoPictureSource::pictureChanged, this, &PictureSurface::takePicture);
  takePicture();
}

void PictureSurface::takePicture() {
  auto picture = m_source->picture();
  pictureTaken(picture.get());
  m_pictures.setVideoPicture(std::move(picture));
  update();
}

void PictureSurface::initializeGL() {
  // The context goes when the widget moves to another window, and comes anew there.
  connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &PictureSurface::releaseContext,
          Qt::UniqueConnection);
}

void PictureSurface::leaveContext() {
  if (context()) disconnect(context(), nullptr, this, nullptr);
  releaseContext();
}

void PictureSurface::releaseContext() {
  if (!isValid()) return;
  makeCurrent();
  releaseResources();
  doneCurrent();
}

void PictureSurface::releaseResources() {
  m_pictures.release();
}

void PictureSurface::clear(const QColor& color) {
  QOpenGLFunctions* const gl = context()->functions();
  gl->glClearColor(color.redF(), color.greenF(), color.blueF(), 1);
  gl->glClear(GL_COLOR_BUFFER_BIT);
}

}  // namespace vantrel
