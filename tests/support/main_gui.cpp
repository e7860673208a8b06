#include <gmock/gmock.h>

#include <QApplication>

#include "platform/gl/surface_format.h"
#include "support/warnings.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  QSurfaceFormat::setDefaultFormat(vantrel::pictureSurfaceFormat());
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  vantrel::testing::failOnWarnings();
  return RUN_ALL_TESTS();
}
