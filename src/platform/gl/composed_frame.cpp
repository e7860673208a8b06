#include <QOpenGLContext>
#include <QOpenGLWidget>
#include <utility>

#include "platform/gl/picture_frame.h"

namespace vantrel {
namespace {

/// The context comes and goes with the window that the widget is in.
class ComposedFrame final : public QOpenGLWidget, public PictureFrame {
 public:
  ComposedFrame(Drawing drawing, QWidget* parent)
      : QOpenGLWidget(parent), m_drawing(std::move(drawing)) {}
  ~ComposedFrame() override {
    if (context()) disconnect(context(), nullptr, this, nullptr);
  }
  Q_DISABLE_COPY_MOVE(ComposedFrame)

  QWidget& widget() override { return *this; }
  void requestDrawing() override { update(); }
  [[nodiscard]] bool hasContext() const override { return isValid(); }
  bool makeCurrent() override {
    QOpenGLWidget::makeCurrent();
    return QOpenGLContext::currentContext() == context();
  }
  void doneCurrent() override { QOpenGLWidget::doneCurrent(); }
  QImage grab() override { return grabFramebuffer(); }

 protected:
  void initializeGL() override {
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &ComposedFrame::release,
            Qt::UniqueConnection);
  }
  void paintGL() override { m_drawing.draw(); }

 private:
  void release() {
    if (!hasContext() || !makeCurrent()) return;
    m_drawing.release();
    doneCurrent();
  }

  const Drawing m_drawing;
};

}  // namespace

PictureFrame* makeComposedFrame(PictureFrame::Drawing drawing, QWidget* parent) {
  return new ComposedFrame(std::move(drawing), parent);
}

}  // namespace vantrel
