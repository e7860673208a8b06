#pragma once

// Private to this folder.

#include <QByteArray>
#include <QOpenGLShaderProgram>
#include <initializer_list>
#include <memory>
#include <vector>

namespace vantrel {

/// The program of these shaders in the context that is current: one and the same for all who hold
/// it, for drivers finish a program only when it first draws, and that takes long. Its uniforms are
/// whatever was set last. The last holder gives it back with the context current. `attributes` are
/// bound to locations from 0 on. Any thread.
[[nodiscard]] std::shared_ptr<QOpenGLShaderProgram> sharedProgram(
    const char* vertexShader, const QByteArray& fragmentShader,
    std::initializer_list<const char*> attributes);

/// All of those that somebody holds in the context that is current.
[[nodiscard]] std::vector<std::shared_ptr<QOpenGLShaderProgram>> sharedPrograms();

}  // namespace vantrel
