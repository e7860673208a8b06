#include "platform/gl/shared_program.h"

#include <gtest/gtest.h>

#include <QOffscreenSurface>
#include <QOpenGLContext>

#include "platform/gl/first_drawing.h"
#include "platform/gl/offscreen_canvas.h"

namespace vantrel {
namespace {

constexpr const char* kVertices = R"(#version 150
in vec2 first;
in vec2 second;
void main() { gl_Position = vec4(first + second, 0.0, 1.0); }
)";
constexpr const char* kRed = R"(#version 150
out vec4 fragment;
void main() { fragment = vec4(1.0, 0.0, 0.0, 1.0); }
)";
constexpr const char* kBlue = R"(#version 150
out vec4 fragment;
void main() { fragment = vec4(0.0, 0.0, 1.0, 1.0); }
)";

class SharedProgramTest : public ::testing::Test {
 protected:
  static auto program(const char* fragmentShader) {
    return sharedProgram(kVertices, fragmentShader, {"first", "second"});
  }
  static constexpr QSize kSize{16, 16};
  testing::OffscreenCanvas canvas{kSize};
};

TEST_F(SharedProgramTest, IsOneForAllWhoHoldIt) {
  const auto red = program(kRed);
  EXPECT_TRUE(red->isLinked());
  EXPECT_EQ(red->attributeLocation("first"), 0);
  EXPECT_EQ(red->attributeLocation("second"), 1);
  EXPECT_EQ(program(kRed), red);
  EXPECT_NE(program(kBlue), red);
}

TEST_F(SharedProgramTest, GoesWithItsLastHolder) {
  auto red = program(kRed);
  const std::weak_ptr<QOpenGLShaderProgram> seen = red;
  EXPECT_EQ(sharedPrograms().size(), 1U);
  red.reset();
  EXPECT_TRUE(seen.expired());
  EXPECT_TRUE(sharedPrograms().empty());
  EXPECT_TRUE(program(kRed)->isLinked());
}

TEST_F(SharedProgramTest, BelongsToOneContext) {
  const auto red = program(kRed);
  QOpenGLContext* const own = QOpenGLContext::currentContext();
  QSurface* const surface = own->surface();
  QOpenGLContext other;
  other.setFormat(own->format());
  ASSERT_TRUE(other.create());
  ASSERT_TRUE(other.makeCurrent(surface));
  EXPECT_TRUE(sharedPrograms().empty());
  EXPECT_NE(program(kRed), red);
  ASSERT_TRUE(own->makeCurrent(surface));
}

TEST_F(SharedProgramTest, AllThatPicturesNeedAreHeldOnceOneOfEachIsDrawn) {
  // Rectangles, tiles of two kinds, videos of two kinds.
  const auto programs = drawOneOfEach(kSize);
  EXPECT_EQ(programs.size(), 5U);
  EXPECT_EQ(sharedPrograms(), programs);
}

}  // namespace
}  // namespace vantrel
