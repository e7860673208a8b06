#pragma once

// Private to this folder.

#include <QOpenGLShaderProgram>
#include <QSize>
#include <memory>
#include <vector>

namespace vantrel {

/// Draws a little of each kind of picture into the bound framebuffer of this size, since drivers
/// finish a program only when it first draws, and for the format that it draws to. Gives the
/// programs. Any thread, with the context current.
[[nodiscard]] std::vector<std::shared_ptr<QOpenGLShaderProgram>> drawOneOfEach(const QSize& target);

}  // namespace vantrel
