#include "platform/gl/picture_surface.h"

#include <QEvent>
#include <QGuiApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QVBoxLayout>
#include <utility>

#include "platform/gl/picture_frame.h"
#include "platform/gl/shared_context.h"
#include "platform/movie/video_picture.h"

namespace vantrel {
namespace {

/// Set to one of these, it decides how frames come into their windows, whatever suits.
constexpr const char* kFramesVariable = "VANTREL_FRAMES";
constexpr const char* kComposed = "composed";
constexpr const char* kCopied = "copied";

/// What frames are drawn in that are copied; null where they are composed. Until the application
/// ends.
std::shared_ptr<SharedContext>& copyingContext() {
  // Never destroyed: a process that ends early has no display any more to give it back to.
  static auto& context = *new std::shared_ptr<SharedContext>;
  return context;
}

bool copies(SharedContext& context) {
  const QByteArray told = qgetenv(kFramesVariable);
  return told == kCopied || (told != kComposed && context.isSoftware());
}

/// Whether there is OpenGL; finds out how it comes into windows.
bool canDraw() {
  // The one platform that has contexts, but no windows that show what is drawn with them.
  if (QGuiApplication::platformName() == QLatin1String("offscreen")) return false;
  std::shared_ptr<SharedContext> context = SharedContext::make();
  if (!context) return false;
  const bool copied = copies(*context);
  context->doneCurrent();
  if (!copied) return true;
  context->finishPrograms();
  copyingContext() = std::move(context);
  qAddPostRoutine([] { copyingContext().reset(); });
  return true;
}

}  // namespace

bool PictureSurface::isSupported() {
  if (!s_supported) s_supported = canDraw();
  return *s_supported;
}

bool PictureSurface::isSupportKnown() {
  return s_supported.has_value();
}

PictureSurface::PictureSurface(QWidget* parent) : QWidget(parent) {
  // No framebuffer can be empty.
  setMinimumSize(1, 1);
  connect(&m_pictures, &PictureRenderer::pictureImproved, this, &PictureSurface::requestFrame);
  if (s_supported) prepareFrame();
}

void PictureSurface::prepareFrame() {
  if (m_frame || !isSupported()) return;
  PictureFrame::Drawing drawing{[this] { draw(); }, [this] { releaseResources(); },
                                [this] { return m_background; }};
  m_frame = copyingContext() ? makeCopiedFrame(copyingContext(), std::move(drawing), this)
                             : makeComposedFrame(std::move(drawing), this);
  QWidget& frame = m_frame->widget();
  frame.setAttribute(Qt::WA_TransparentForMouseEvents);
  // A scroll area takes the resize events of its viewport for itself, but leaves them to a layout.
  auto* const filling = new QVBoxLayout(this);
  filling->setContentsMargins({});
  filling->addWidget(&frame);
  frame.lower();
}

bool PictureSurface::event(QEvent* event) {
  // Before the first window that it is shown in, if that can be.
  if (event->type() == QEvent::ParentChange ? s_supported.has_value()
                                            : event->type() == QEvent::Show) {
    prepareFrame();
  }
  return QWidget::event(event);
}

QImage PictureSurface::grabFrame() {
  prepareFrame();
  if (!m_frame) return {};
  layout()->activate();
  return m_frame->grab();
}

void PictureSurface::draw() {
  QOpenGLFunctions* const gl = QOpenGLContext::currentContext()->functions();
  gl->glClearColor(m_background.redF(), m_background.greenF(), m_background.blueF(), 1);
  gl->glClear(GL_COLOR_BUFFER_BIT);
  m_hasFrame = true;
  drawFrame();
  Q_EMIT frameDrawn();
}

void PictureSurface::setBackground(const QColor& color) {
  if (color == m_background) return;
  m_background = color;
  requestFrame();
}

void PictureSurface::requestFrame() {
  if (m_frame) m_frame->requestDrawing();
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
  requestFrame();
}

void PictureSurface::leaveContext() {
  if (m_frame && m_frame->hasContext() && m_frame->makeCurrent()) {
    releaseResources();
    m_frame->doneCurrent();
  }
  if (m_frame) delete &std::exchange(m_frame, nullptr)->widget();
}

void PictureSurface::releaseResources() {
  m_pictures.release();
}

}  // namespace vantrel
