#include <gmock/gmock.h>

#include <QCoreApplication>

#include "support/warnings.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  const QCoreApplication application(argc, argv);
  vantrel::testing::failOnWarnings();
  return RUN_ALL_TESTS();
}
