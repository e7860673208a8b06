#include "platform/gl/shared_context.h"

#include <QByteArray>
#include <QOpenGLFunctions>
#include <algorithm>
#include <array>

#include "platform/gl/surface_format.h"

namespace vantrel {
namespace {

/// In the names of Mesa's renderers without a graphics card.
constexpr std::array kSoftwareNames{"llvmpipe", "softpipe", "swrast"};

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

bool SharedContext::isSoftware() {
  if (!makeCurrent()) return false;
  const auto* const name =
      reinterpret_cast<const char*>(m_context.functions()->glGetString(GL_RENDERER));
  const QByteArray renderer = QByteArray(name).toLower();
  return std::any_of(kSoftwareNames.begin(), kSoftwareNames.end(),
                     [&](const char* software) { return renderer.contains(software); });
}

}  // namespace vantrel
