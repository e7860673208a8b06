#include <gmock/gmock.h>

#include <QApplication>

#include "platform/gl/surface_format.h"
#include "support/warnings.h"

#ifdef __SANITIZE_ADDRESS__
/// Takes the place of the system's: an OpenGL driver that has been unloaded can no longer be seen
/// to hold what it keeps for the life of the program, and the leak sanitizer would report that.
extern "C" int dlclose(void* /*library*/) {
  return 0;
}
#endif

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  QSurfaceFormat::setDefaultFormat(vantrel::pictureSurfaceFormat());
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  vantrel::testing::failOnWarnings();
  return RUN_ALL_TESTS();
}
