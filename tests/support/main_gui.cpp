#include <gmock/gmock.h>

#include <QApplication>

#include "support/warnings.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  vantrel::testing::failOnWarnings();
  return RUN_ALL_TESTS();
}
