#include "platform/gl/shared_context.h"

#include <QByteArray>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <algorithm>
#include <array>

#include "platform/desktop/background_priority.h"
#include "platform/gl/first_drawing.h"
#include "platform/gl/shared_program.h"
#include "platform/gl/surface_format.h"

namespace vantrel {
namespace {

/// In the names of Mesa's renderers without a graphics card.
constexpr std::array kSoftwareNames{"llvmpipe", "softpipe", "swrast"};

constexpr QSize kFirstFrame(16, 16);

}  // namespace

std::unique_ptr<SharedContext> SharedContext::make() {
  std::unique_ptr<SharedContext> made(new SharedContext);
  QOpenGLContext& context = made->m_context;
  context.setFormat(pictureSurfaceFormat());
  if (!context.create() || context.isOpenGLES()) return nullptr;
  made->m_surface.setFormat(context.format());
  made->m_surface.create();
  if (context.format().version() < pictureSurfaceFormat().version()) return nullptr;
  return made->makeCurrent() ? std::move(made) : nullptr;
}

SharedContext::~SharedContext() {
  if (makeCurrent()) m_programs.clear();
}

bool SharedContext::makeCurrent() {
  takeBack();
  return m_context.makeCurrent(&m_surface);
}

bool SharedContext::isSoftware() {
  if (!makeCurrent()) return false;
  const auto* const name =
      reinterpret_cast<const char*>(m_context.functions()->glGetString(GL_RENDERER));
  const QByteArray renderer = QByteArray(name).toLower();
  return std::any_of(kSoftwareNames.begin(), kSoftwareNames.end(),
                     [&](const char* software) { return renderer.contains(software); });
}

void SharedContext::finishPrograms() {
  if (m_thread || !QOpenGLContext::supportsThreadedOpenGL()) return;
  m_context.doneCurrent();
  m_thread.reset(QThread::create([this, main = QThread::currentThread()] {
    giveWayToWindows();
    if (m_context.makeCurrent(&m_surface)) {
      drawFirstFrame();
      m_context.doneCurrent();
    }
    m_context.moveToThread(main);
  }));
  m_context.moveToThread(m_thread.get());
  connect(m_thread.get(), &QThread::finished, this, &SharedContext::takeBack);
  m_thread->start();
  // Without a thread they are finished when they first draw.
  if (!m_thread->isRunning() && !m_thread->isFinished()) takeBack();
}

void SharedContext::drawFirstFrame() {
  QOpenGLFramebufferObject frame(kFirstFrame, QOpenGLFramebufferObject::NoAttachment, GL_TEXTURE_2D,
                                 kFrameFormat);
  if (!frame.bind()) return;
  m_programs = drawOneOfEach(kFirstFrame);
  m_context.functions()->glFinish();
  frame.release();
}

void SharedContext::takeBack() {
  if (!m_thread) return;
  m_thread->wait();
  m_thread.reset();
  if (m_context.thread() != thread()) m_context.moveToThread(thread());
  Q_EMIT ready();
}

}  // namespace vantrel
