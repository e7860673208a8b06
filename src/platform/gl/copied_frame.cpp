#include <QOpenGLFramebufferObject>
#include <QPainter>
#include <QWidget>
#include <utility>

#include "platform/gl/picture_frame.h"
#include "platform/gl/shared_context.h"

namespace vantrel {
namespace {

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
    m_context->makeCurrent();
    m_framebuffer.reset();
    m_context->doneCurrent();
  }
  Q_DISABLE_COPY_MOVE(CopiedFrame)

  QWidget& widget() override { return *this; }
  void requestDrawing() override {
    m_isStale = true;
    update();
  }
  [[nodiscard]] bool hasContext() const override { return m_framebuffer != nullptr; }
  void makeCurrent() override { m_context->makeCurrent(); }
  void doneCurrent() override { m_context->doneCurrent(); }
  QImage grab() override {
    draw();
    return m_frame;
  }

 protected:
  void resizeEvent(QResizeEvent* /*event*/) override { m_isStale = true; }
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    if (!m_context->isReady()) {
      painter.fillRect(rect(), palette().window());
      return;
    }
    if (m_isStale || m_frame.size() != deviceSize()) draw();
    // Pixel by pixel, on a screen with a fractional number of pixels for each point too.
    const double ratio = devicePixelRatioF();
    const QPointF origin = painter.deviceTransform().map(QPointF(0, 0));
    painter.translate((QPointF(origin.toPoint()) - origin) / ratio);
    painter.drawImage(QRectF(QPointF(0, 0), QSizeF(m_frame.size()) / ratio), m_frame);
  }

 private:
  [[nodiscard]] QSize deviceSize() const { return size() * devicePixelRatioF(); }

  void draw() {
    makeCurrent();
    if (!m_framebuffer || m_framebuffer->size() != deviceSize()) {
      m_framebuffer.reset();
      m_framebuffer = std::make_unique<QOpenGLFramebufferObject>(
          deviceSize(), QOpenGLFramebufferObject::NoAttachment, GL_TEXTURE_2D,
          SharedContext::kFrameFormat);
    }
    m_framebuffer->bind();
    m_isStale = false;
    m_drawing.draw();
    m_frame = m_framebuffer->toImage();
    m_framebuffer->release();
    doneCurrent();
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
