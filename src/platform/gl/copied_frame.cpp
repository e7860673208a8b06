#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QWidget>
#include <tuple>
#include <utility>

#include "platform/gl/picture_frame.h"
#include "platform/gl/shared_context.h"

namespace vantrel {
namespace {

/// Of the extension GL_MESA_pack_invert, which hands over the upper row first.
constexpr GLenum kPackInverted = 0x8758;
constexpr const char* kPackInvertedName = "GL_MESA_pack_invert";
/// As OpenGL hands them over; what is drawn over an opaque background is opaque.
constexpr QImage::Format kPixels = QImage::Format_RGBX8888;

/// Reads the bound framebuffer into an image of its size, the same memory each time.
void readFrame(QImage& image) {
  QOpenGLContext& context = *QOpenGLContext::currentContext();
  QOpenGLFunctions& gl = *context.functions();
  const bool isInverted = context.hasExtension(kPackInvertedName);
  if (isInverted) gl.glPixelStorei(kPackInverted, GL_TRUE);
  gl.glPixelStorei(GL_PACK_ALIGNMENT, 4);
  gl.glReadPixels(0, 0, image.width(), image.height(), GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
  if (isInverted) {
    gl.glPixelStorei(kPackInverted, GL_FALSE);
  } else {
    image = std::move(image).mirrored();
  }
}

/// Keeps its last frame, so that what lies over it can be painted without another.
class CopiedFrame final : public QWidget, public PictureFrame {
 public:
  CopiedFrame(std::shared_ptr<SharedContext> context, Drawing drawing, QWidget* parent)
      : QWidget(parent), m_context(std::move(context)), m_drawing(std::move(drawing)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(m_context.get(), &SharedContext::ready, this, qOverload<>(&QWidget::update));
  }
  ~CopiedFrame() override {
    if (!m_framebuffer) return;
    // What cannot be given back goes with the context.
    std::ignore = makeCurrent();
    m_framebuffer.reset();
    doneCurrent();
  }
  Q_DISABLE_COPY_MOVE(CopiedFrame)

  QWidget& widget() override { return *this; }
  void requestDrawing() override {
    m_isStale = true;
    update();
  }
  [[nodiscard]] bool hasContext() const override { return m_framebuffer != nullptr; }
  bool makeCurrent() override { return m_context->makeCurrent(); }
  void doneCurrent() override { m_context->doneCurrent(); }
  QImage grab() override {
    draw();
    return m_frame;
  }

 protected:
  void resizeEvent(QResizeEvent* /*event*/) override { m_isStale = true; }
  void paintEvent(QPaintEvent* /*event*/) override {
    if (m_context->isReady() && (m_isStale || m_frame.size() != deviceSize())) draw();
    QPainter painter(this);
    if (m_frame.isNull()) {
      painter.fillRect(rect(), m_drawing.background());
      return;
    }
    // Pixel by pixel, on a screen with a fractional number of pixels for each point too.
    const double ratio = devicePixelRatioF();
    const QPointF origin = painter.deviceTransform().map(QPointF(0, 0));
    painter.translate((QPointF(origin.toPoint()) - origin) / ratio);
    painter.drawImage(QRectF(QPointF(0, 0), QSizeF(m_frame.size()) / ratio), m_frame);
  }

 private:
  [[nodiscard]] QSize deviceSize() const { return size() * devicePixelRatioF(); }

  void draw() {
    m_isStale = false;
    if (!makeCurrent()) return;
    if (!m_framebuffer || m_framebuffer->size() != deviceSize()) makeFramebuffer();
    if (m_framebuffer->bind()) {
      m_drawing.draw();
      readFrame(m_frame);
      m_framebuffer->release();
    }
    doneCurrent();
  }
  /// With an image of its size.
  void makeFramebuffer() {
    m_framebuffer.reset();
    m_framebuffer = std::make_unique<QOpenGLFramebufferObject>(
        deviceSize(), QOpenGLFramebufferObject::NoAttachment, GL_TEXTURE_2D,
        SharedContext::kFrameFormat);
    m_frame = m_framebuffer->isValid() ? QImage(deviceSize(), kPixels) : QImage();
  }

  const std::shared_ptr<SharedContext> m_context;
  const Drawing m_drawing;
  std::unique_ptr<QOpenGLFramebufferObject> m_framebuffer;
  bool m_isStale = true;
  /// The last that was drawn.
  QImage m_frame;
};

}  // namespace

PictureFrame* makeCopiedFrame(std::shared_ptr<SharedContext> context, PictureFrame::Drawing drawing,
                              QWidget* parent) {
  return new CopiedFrame(std::move(context), std::move(drawing), parent);
}

}  // namespace vantrel
