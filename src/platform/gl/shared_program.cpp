#include "platform/gl/shared_program.h"

#include <QOpenGLContext>
#include <map>
#include <mutex>
#include <utility>

namespace vantrel {
namespace {

/// By context and fragment shader: no two programs have the same one.
using Programs =
    std::map<std::pair<const QOpenGLContext*, QByteArray>, std::weak_ptr<QOpenGLShaderProgram>>;

std::mutex& lock() {
  static std::mutex mutex;
  return mutex;
}

/// Under the lock.
Programs& livePrograms() {
  static Programs programs;
  std::erase_if(programs, [](const auto& program) { return program.second.expired(); });
  return programs;
}

}  // namespace

std::shared_ptr<QOpenGLShaderProgram> sharedProgram(const char* vertexShader,
                                                    const QByteArray& fragmentShader,
                                                    std::initializer_list<const char*> attributes) {
  const std::lock_guard held(lock());
  auto& known = livePrograms()[{QOpenGLContext::currentContext(), fragmentShader}];
  if (auto program = known.lock()) return program;
  auto program = std::make_shared<QOpenGLShaderProgram>();
  program->addShaderFromSourceCode(QOpenGLShader::Vertex, vertexShader);
  program->addShaderFromSourceCode(QOpenGLShader::Fragment, fragmentShader);
  int location = 0;
  for (const char* const attribute : attributes)
    program->bindAttributeLocation(attribute, location++);
  program->link();
  known = program;
  return program;
}

std::vector<std::shared_ptr<QOpenGLShaderProgram>> sharedPrograms() {
  const std::lock_guard held(lock());
  std::vector<std::shared_ptr<QOpenGLShaderProgram>> programs;
  for (const auto& [place, program] : livePrograms()) {
    if (place.first == QOpenGLContext::currentContext()) programs.push_back(program.lock());
  }
  return programs;
}

}  // namespace vantrel
