#include "support/warnings.h"

#include <gtest/gtest.h>

#include <QMutex>
#include <QMutexLocker>
#include <cstdio>
#include <optional>

namespace vantrel::testing {
namespace {

QMutex mutex;
// Guarded by mutex.
std::optional<QString> expected;
int seen = 0;

void handle(QtMsgType type, const QMessageLogContext&, const QString& message) {
  std::fprintf(stderr, "%s\n", qUtf8Printable(message));
  if (type != QtWarningMsg && type != QtCriticalMsg) return;
  {
    const QMutexLocker lock(&mutex);
    if (expected && message.contains(*expected)) {
      ++seen;
      return;
    }
  }
  ADD_FAILURE() << "unexpected warning: " << message.toStdString();
}

}  // namespace

void failOnWarnings() {
  qInstallMessageHandler(handle);
}

ExpectedWarning::ExpectedWarning(QString text) {
  const QMutexLocker lock(&mutex);
  expected = std::move(text);
  seen = 0;
}

ExpectedWarning::~ExpectedWarning() {
  const QMutexLocker lock(&mutex);
  EXPECT_GT(seen, 0) << "expected a warning with: " << expected->toStdString();
  expected.reset();
}

}  // namespace vantrel::testing
